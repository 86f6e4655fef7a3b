#include "app/intake/dump/features.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

using qx::call;

void countCentroids(const Dataset& dataset, JsonLine& line) {
    int32_t centroids = 0;
    int32_t status = 0;
    call(cntopn_, centroids, std::string_view(dataset.path), status);
    if (status != 0) return;
    int32_t count = 0;
    call(cntrec_, centroids, count);
    line.field("centroid", count);
    call(cntcls_, centroids);
}

void dumpCentroids(Dump& dump, const Dataset& dataset) {
    int32_t centroids = 0;
    int32_t status = 0;
    call(cntopn_, centroids, std::string_view(dataset.path), status);
    if (status != 0) return;
    QxCentroid centroid{};
    int32_t number = 0;
    std::vector<int32_t> labels(100);
    for (;;) {
        const auto room = static_cast<int32_t>(labels.size());
        call(cntrd_, centroids, number, centroid, labels, room, status);
        if (status > 0) {
            labels.resize(static_cast<std::size_t>(centroid.labelCount));
            continue;
        }
        if (status != 0) break;
        JsonLine line(dump.output(), "centroid");
        line.field("number", number).field("x", double{centroid.x}).field("y", double{centroid.y});
        line.field("labels", std::span<const int32_t>(
                                 labels.data(), static_cast<std::size_t>(centroid.labelCount)));
    }
    call(cntcls_, centroids);
}

}  // namespace program
