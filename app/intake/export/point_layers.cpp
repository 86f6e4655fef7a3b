// The layers of places: labels or points, centroids, tics.
#include <limits>

#include "app/intake/export/layers.h"
#include "datasets/features.h"

namespace program {

using formats::GeometryType;

void exportLabels(Target& target, const std::string& coverage, bool asPoints) {
    datasets::Labels labels = datasets::labels(coverage);
    const std::string name = asPoints ? "points" : "labels";
    if (!labels || !target.wants(name)) return;
    TableColumns table = asPoints ? columnsOf(target, coverage, "PAT") : TableColumns();
    target.begin(layerOf(name, GeometryType::kPoint,
                         (asPoints ? "Points of " : "Label points of ") + coverage,
                         {"number", "user_id", "polygon"}, table));
    std::vector<formats::Value> values;
    eachWithin(target, std::move(labels), coverage, datasets::Indexed::points, {},
               [&](const datasets::Label& label, int32_t record) {
                   values.clear();
                   for (const int32_t each : {label.number, label.userId, label.polygon}) {
                       values.emplace_back(int64_t{each});
                   }
                   table.append(record, target.decoder(), values);
                   target.addPoint(record, label.place, values);
               });
    target.end();
}

void exportCentroids(Target& target, const std::string& coverage) {
    datasets::Centroids centroids = datasets::centroids(coverage);
    if (!centroids || !target.wants("centroids")) return;
    formats::Layer layer = layerOf("centroids", GeometryType::kPoint,
                                   "Centroids of the polygons of " + coverage, {"polygon"});
    layer.columns.push_back({"labels", formats::ColumnType::kText, 0});
    target.begin(layer);
    for (const datasets::Centroid& centroid : centroids) {
        if (!isWithin(target, centroid.place)) continue;
        std::string labels;
        for (const int32_t label : centroid.labels) {
            if (!labels.empty()) labels += ' ';
            labels += std::to_string(label);
        }
        const formats::Value values[] = {int64_t{centroid.number}, std::string_view(labels)};
        target.addPoint(centroid.number, centroid.place, values);
    }
    target.end();
}

namespace {

// What a column says of a record as a real, whatever it is kept as.
double realOf(const datasets::Row& row, int32_t column) {
    const datasets::Value value = row[static_cast<std::size_t>(column)];
    if (const auto* real = std::get_if<double>(&value)) return *real;
    if (const auto* integer = std::get_if<int64_t>(&value)) return static_cast<double>(*integer);
    return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace

void exportTics(Target& target, const std::string& coverage) {
    TableColumns table = columnsOf(target, coverage, "TIC");
    const int32_t x = table.table().find("XTIC");
    const int32_t y = table.table().find("YTIC");
    if (x < 0 || y < 0 || !target.wants("tics")) return;
    target.begin(
        layerOf("tics", GeometryType::kPoint, "Registration points of " + coverage, {}, table));
    std::vector<formats::Value> values;
    for (const datasets::Row& row : table.table()) {
        const datasets::Point place{realOf(row, x), realOf(row, y)};
        if (!isWithin(target, place)) continue;
        values.clear();
        table.append(row, target.decoder(), values);
        target.addPoint(row.number(), place, values);
    }
    target.end();
}

}  // namespace program
