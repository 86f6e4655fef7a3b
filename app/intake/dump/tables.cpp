#include "app/intake/dump/tables.h"

#include <vector>

#include "app/intake/dump/side_files.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

namespace {

using qx::call;

struct Item {
    QxItem item{};
    TableName name;
    TableName alternateName;
};

std::vector<Item> itemsOf(int32_t table, bool& external) {
    int32_t count = 0;
    int32_t inDataset = 0;
    int32_t status = 0;
    call(infitc_, table, count, inDataset);
    external = inDataset != 0;
    std::vector<Item> items(static_cast<std::size_t>(count));
    for (int32_t place = 1; place <= count; ++place) {
        Item& each = items[static_cast<std::size_t>(place) - 1];
        call(infitm_, table, place, each.item, each.name, each.alternateName, status);
    }
    return items;
}

void writeItem(JsonLine& line, const Item& each) {
    const QxItemDescriptor& shape = each.item.descriptor;
    line.beginObject();
    line.field("name", each.name.view()).field("alternateName", each.alternateName.view());
    line.field("width", shape.width).field("start", shape.start).field("type", shape.type);
    line.field("decimals", shape.decimals).field("outputWidth", shape.outputWidth);
    line.field("redefined", each.item.redefined != 0).field("number", each.item.number);
    line.field("indexed", each.item.indexed != 0);
    line.field("kept", std::span<const int32_t>(each.item.kept));
    line.endObject();
}

void writeValue(JsonLine& line, int32_t table, int32_t place, const QxItemDescriptor& shape) {
    double value = 0;
    int32_t status = 0;
    std::string text(static_cast<std::size_t>(shape.width), ' ');
    infval_(&table, &place, &value, text.data(), &status, shape.width);
    if (status != 0) {
        line.null();
    } else if (shape.type == QX_ITEM_INTEGER) {
        line.value(static_cast<int64_t>(value));
    } else if (shape.type == QX_ITEM_NUMBER_TEXT || shape.type == QX_ITEM_REAL) {
        line.value(value);
    } else {
        line.value(text);
    }
}

void dumpRecords(Dump& dump, int32_t table, const TableName& name, const std::vector<Item>& items) {
    int32_t number = 0;
    int32_t status = 0;
    for (;;) {
        call(infrd_, table, number, status);
        if (status != 0) return;
        JsonLine line(dump.output(), "record");
        line.field("table", name.view()).field("number", number);
        line.key("values").beginObject();
        for (std::size_t index = 0; index < items.size(); ++index) {
            line.key(items[index].name.view());
            writeValue(line, table, static_cast<int32_t>(index) + 1, items[index].item.descriptor);
        }
        line.endObject();
    }
}

void dumpTable(Dump& dump, const qx::Name& directory, const TableName& name) {
    int32_t table = 0;
    int32_t records = 0;
    int32_t bytes = 0;
    int32_t status = 0;
    call(infopn_, name, directory, "", 1, table, records, bytes, status);
    if (status != 0) return;
    bool external = false;
    const std::vector<Item> items = itemsOf(table, external);
    if (dump.wants("table")) {
        JsonLine line(dump.output(), "table");
        line.field("name", name.view()).field("external", external);
        line.field("recordCount", records).field("recordLength", bytes);
        line.key("items").beginList();
        for (const Item& each : items) writeItem(line, each);
        line.endList();
    }
    if (dump.wants("record")) dumpRecords(dump, table, name, items);
    qx::Name metadata;
    call(infxml_nam_, table, metadata);
    dumpText(dump, "metadata", std::string(metadata.view()), name.view());
    call(infcls_, table);
}

}  // namespace

TablePlace placeOfTable(const std::string& path) {
    TablePlace place;
    qx::FixedText<8> prefix;
    call(infpth_, std::string_view(path), place.directory, prefix, place.name);
    return place;
}

void dumpTables(Dump& dump, const std::string& dataset) {
    const TablePlace place = placeOfTable(dataset);
    int32_t list = 0;
    int32_t count = 0;
    int32_t status = 0;
    call(inflst_, list, place.directory, place.name, count);
    for (;;) {
        TableName name;
        call(infnxt_, list, name, status);
        if (status != 0) break;
        dumpTable(dump, place.directory, name);
    }
    call(infend_, list);
}

void dumpInfoDatafile(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    const TablePlace place = placeOfTable(dataset.path);
    dumpTable(dump, place.directory, place.name);
}

}  // namespace program
