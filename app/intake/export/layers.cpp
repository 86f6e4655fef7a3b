#include "app/intake/export/layers.h"

#include "app/intake/utf8.h"

namespace program {

namespace {

// Behind the last point of a table's name.
std::string_view suffixOf(std::string_view name) {
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos ? std::string_view() : name.substr(point + 1);
}

}  // namespace

TableColumns columnsOf(Target& target, const std::string& dataset, std::string_view suffix) {
    for (const datasets::TablePlace& place : datasets::tablesOf(dataset)) {
        if (suffixOf(place.name) == suffix) return {place, target.options().redefined};
    }
    return {};
}

std::string nameWith(std::string_view name, std::string_view subclass) {
    std::string text(name);
    if (!subclass.empty()) text += '_' + toUtf8(subclass);
    return text;
}

formats::Layer layerOf(std::string name, formats::GeometryType geometry, std::string description,
                       std::initializer_list<const char*> integers, const TableColumns& table) {
    formats::Layer layer;
    layer.name = std::move(name);
    layer.geometry = geometry;
    layer.description = std::move(description);
    for (const char* each : integers) {
        layer.columns.push_back({each, formats::ColumnType::kInteger, 4});
    }
    table.define(layer.columns);
    return layer;
}

bool isWithin(const Target& target, const datasets::Box& box) {
    return !target.options().within || datasets::meets(box, *target.options().within);
}

bool isWithin(const Target& target, const datasets::Point& place) {
    return isWithin(target, datasets::Box{place.x, place.y, place.x, place.y});
}

}  // namespace program
