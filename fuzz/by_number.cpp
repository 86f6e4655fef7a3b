#include "fuzz/by_number.h"

#include "datasets/coverage.h"
#include "datasets/features.h"
#include "datasets/small_tables.h"
#include "datasets/tables.h"
#include "fuzz/scratch.h"

namespace fuzz {

namespace {

// A damaged head may claim any count that its file could hold.
constexpr int32_t kMost = 5000;

template <class Features>
void backwards(Features range) {
    const int32_t count = range.count();
    require(range || count == 0, "what is not there has no records");
    require(!range.at(0) && (count == INT32_MAX || !range.at(count + 1)),
            "numbers have their ends");
    for (int32_t record = std::min(count, kMost); record > 0; --record) range.at(record);
}

void readRows(datasets::Table table) {
    for (int32_t record = std::min(table.count(), kMost); record > 0; --record) {
        const datasets::Row* row = table.at(record);
        if (!row) continue;
        require(row->number() == record, "a row knows its number");
        for (std::size_t column = 0; column < row->size(); ++column) {
            const auto bytes = row->bytes(column).size();
            const datasets::Value value = (*row)[column];
            const auto* text = std::get_if<std::string_view>(&value);
            require(!text || text->size() == bytes, "a text is the whole of its bytes");
            const auto* date = std::get_if<datasets::Date>(&value);
            require(!date || date->text.size() == bytes, "a date too");
        }
    }
}

}  // namespace

void readByNumber(const std::string& path) {
    using namespace datasets;
    backwards(arcs(path));
    backwards(labels(path));
    backwards(centroids(path));
    backwards(polygons(path));
    backwards(polygons(path, PolygonSource::boxes));
    backwards(addressTexts(path));
    backwards(addressIntegers(path));
    for (const std::string& name : subclasses(path, Subclassed::annotation)) {
        backwards(annotations(path, name));
    }
    for (const std::string& name : subclasses(path, Subclassed::regions)) {
        backwards(regions(path, name));
    }
    readRows(table(path));
    for (const TablePlace& each : tablesOf(path)) readRows(table(each));
}

}  // namespace fuzz
