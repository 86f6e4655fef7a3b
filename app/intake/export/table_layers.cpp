// Tables without places, and texts.
#include <array>

#include "app/intake/export/layers.h"
#include "app/intake/utf8.h"
#include "datasets/coverage.h"
#include "datasets/features.h"
#include "datasets/side_texts.h"
#include "datasets/small_tables.h"

namespace program {

namespace {

using formats::GeometryType;
using formats::Value;

std::string joined(datasets::Lines lines) {
    std::string text;
    for (const std::string& line : lines) (text += line) += '\n';
    return text;
}

void exportOne(Target& target, const datasets::TablePlace& place) {
    const std::string name = toUtf8(place.name);
    if (!target.wants(name)) return;
    TableColumns table(place, target.options().redefined);
    if (!table.table()) {
        target.report().loss(name, "the table could not be read");
        return;
    }
    target.begin(layerOf(name, GeometryType::kNone, "Table " + name, {}, table), true);
    std::vector<Value> values;
    int32_t rows = 0;
    for (const datasets::Row& row : table.table()) {
        values.clear();
        table.append(row, target.decoder(), values);
        target.add(row.number(), {}, values);
        ++rows;
    }
    target.unread(table.table().count() - rows);
    target.end();
    if (auto metadata = datasets::linesOf(table.table().metadataPath())) {
        target.text("metadata", name, joined(std::move(metadata)));
    }
}

// A table of integers that is no attribute table.
template <class Records, class Fill>
void exportIntegers(Target& target, Records records, const std::string& name,
                    std::string description, std::initializer_list<const char*> columns,
                    Fill fill) {
    if (!records || !target.wants(name)) return;
    target.begin(layerOf(name, GeometryType::kNone, std::move(description), columns));
    int64_t fid = 0;
    for (const auto& record : records) {
        fill(record, [&](std::initializer_list<int32_t> numbers) {
            std::vector<Value> values;
            for (const int32_t each : numbers) values.emplace_back(int64_t{each});
            target.add(++fid, {}, values);
        });
    }
    target.end();
}

}  // namespace

void exportTables(Target& target, const std::string& dataset) {
    for (const datasets::TablePlace& place : datasets::tablesOf(dataset)) exportOne(target, place);
}

void exportTable(Target& target, const datasets::Dataset& dataset) {
    exportOne(target, datasets::tablePlace(dataset.path));
}

void exportTexts(Target& target, const std::string& dataset, const std::string& layer) {
    struct {
        datasets::SideText which;
        const char* name;
    } constexpr kTexts[] = {{datasets::SideText::log, "log"},
                            {datasets::SideText::projection, "projection"},
                            {datasets::SideText::metadata, "metadata"}};
    for (const auto& [which, name] : kTexts) {
        if (auto lines = datasets::sideText(dataset, which)) {
            target.text(name, layer, joined(std::move(lines)));
        }
    }
}

void exportSmallTables(Target& target, const std::string& coverage) {
    if (auto rows = datasets::tolerances(coverage); rows && target.wants("tolerances")) {
        formats::Layer layer = layerOf("tolerances", GeometryType::kNone,
                                       "Tolerances of " + nameOf(coverage), {"column1", "column2"});
        layer.columns.push_back({"value", formats::ColumnType::kReal, 8});
        target.begin(layer);
        for (const datasets::Tolerance& each : rows) {
            const Value values[] = {int64_t{each.column1}, int64_t{each.column2}, each.value};
            target.add(each.row, {}, values);
        }
        target.end();
    }
    if (auto rows = datasets::addressTexts(coverage); rows && target.wants("address_texts")) {
        formats::Layer layer = layerOf("address_texts", GeometryType::kNone,
                                       "Address texts of " + nameOf(coverage), {"value"});
        layer.columns.push_back({"text", formats::ColumnType::kText, 8});
        target.begin(layer);
        std::string room;
        for (const datasets::AddressText& each : rows) {
            const Value values[] = {int64_t{each.value},
                                    target.decoder().decode(each.text, isUtf8(each.text), room)};
            target.add(each.number, {}, values);
        }
        target.end();
    }
    exportIntegers(target, datasets::addressIntegers(coverage), "address_integers",
                   "Address integers of " + nameOf(coverage), {"number", "a", "b", "c", "d"},
                   [](const datasets::AddressIntegers& record, auto add) {
                       for (const auto& [a, b, c, d] : record.entries) {
                           add({record.number, a, b, c, d});
                       }
                   });
    for (const std::string& subclass :
         datasets::subclasses(coverage, datasets::Subclassed::regionPairs)) {
        exportIntegers(target, datasets::regionPairs(coverage, subclass),
                       nameWith("region_pairs", subclass),
                       "Regions and their polygons, of " + nameOf(coverage), {"number", "a", "b"},
                       [](const datasets::RegionPair& record, auto add) {
                           add({record.number, record.pair[0], record.pair[1]});
                       });
    }
}

}  // namespace program
