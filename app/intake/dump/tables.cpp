#include "datasets/tables.h"

#include "app/intake/dump/texts.h"

namespace program {

namespace {

using datasets::Column;

void writeColumn(JsonLine& line, const Column& column) {
    line.beginObject();
    line.field("name", column.name).field("alternateName", column.alternateName);
    line.field("width", column.width).field("start", column.start);
    line.field("type", static_cast<int32_t>(column.type)).field("decimals", column.decimals);
    line.field("outputWidth", column.outputWidth).field("redefined", column.redefined);
    line.field("number", column.number).field("indexed", column.indexed);
    line.field("kept", std::span<const int32_t>(column.kept));
    line.endObject();
}

void writeValue(JsonLine& line, const datasets::Value& value) {
    if (const auto* text = std::get_if<std::string_view>(&value)) {
        line.value(*text);
    } else if (const auto* real = std::get_if<double>(&value)) {
        line.value(*real);
    } else if (const auto* whole = std::get_if<int64_t>(&value)) {
        line.value(*whole);
    } else {
        line.null();
    }
}

void dumpRecords(Dump& dump, datasets::Table& table, const std::string& name) {
    std::vector<JsonKey> keys;
    for (const Column& column : table.columns()) keys.emplace_back(column.name);
    for (const datasets::Row& row : table) {
        JsonLine line(dump.output(), "record");
        line.field("table", name).field("number", row.number()).key("values").beginObject();
        for (std::size_t column = 0; column < row.size(); ++column) {
            line.key(keys[column]);
            writeValue(line, row.stored(column));
        }
        line.endObject();
    }
}

void dumpTable(Dump& dump, const datasets::TablePlace& place) {
    datasets::Table table(place);
    if (!table) return;
    if (dump.wants("table")) {
        JsonLine line(dump.output(), "table");
        line.field("name", place.name).field("external", table.external());
        line.field("recordCount", table.count()).field("recordLength", table.recordLength());
        line.key("items").beginList();
        for (const Column& each : table.columns()) writeColumn(line, each);
        line.endList();
    }
    if (dump.wants("record")) dumpRecords(dump, table, place.name);
    if (!dump.wants("metadata")) return;
    dumpText(dump, "metadata", datasets::linesOf(table.metadataPath()), place.name);
}

}  // namespace

void dumpTables(Dump& dump, const std::string& dataset) {
    for (const datasets::TablePlace& each : datasets::tablesOf(dataset)) dumpTable(dump, each);
}

void dumpInfoDatafile(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    dumpTable(dump, datasets::tablePlace(dataset.path));
}

}  // namespace program
