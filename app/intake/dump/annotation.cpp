#include "app/intake/dump/features.h"
#include "app/intake/dump/subclass_walk.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

using qx::call;

namespace {

constexpr int32_t kAnnotationCode = 16;

void dumpRecord(Dump& dump, std::string_view subclass, int32_t number, const AnnoRecord& anno,
                std::span<const double> points) {
    JsonLine line(dump.output(), "annotation");
    line.field("subclass", subclass).field("number", number);
    line.field("userId", anno.userId).field("groupCode", anno.groupCode);
    line.field("symbolSize", anno.symbolSize).field("textSymbol", anno.textSymbol);
    line.field("pointCount", anno.pointCount).field("lineCount", anno.lineCount);
    line.field("textLength", anno.textLength).field("leaderCount", anno.leaderCount);
    line.field("lineStart", std::span<const int16_t>(anno.lineStart));
    line.field("lineTableB", std::span<const int16_t>(anno.lineTableB));
    line.field("textHeight", anno.textHeight);
    line.field("extraValues", std::span<const double>(anno.extraValues));
    line.field("text", std::string_view(anno.text, sizeof anno.text));
    line.key("leaderPoints").pairs({anno.leaderPoints[0], 2 * QX_ANNO_LEADERS});
    line.field("extraWord1", anno.extraWord1).field("extraWord2", anno.extraWord2);
    line.key("points").pairs(points);
}

void dumpSubclass(Dump& dump, const Dataset& dataset, std::string_view subclass) {
    int32_t annotation = 0;
    int32_t status = 0;
    call(annopn_, annotation, std::string_view(dataset.path), subclass, status);
    if (status != 0) return;
    AnnoRecord anno{};
    std::vector<double> points(1000);
    for (int32_t number = 1;; ++number) {
        const auto room = static_cast<int32_t>(points.size() / 2);
        call(annrd_, annotation, anno, points, room, status);
        if (status > 0) {
            points.resize(static_cast<std::size_t>(anno.pointCount) * 2);
            call(annrd_, annotation, anno, points, anno.pointCount, status);
        }
        if (status != 0) break;
        dumpRecord(dump, subclass, number, anno,
                   {points.data(), static_cast<std::size_t>(anno.pointCount) * 2});
    }
    call(anncls_, annotation);
}

}  // namespace

void countAnnotation(const Dataset& dataset, JsonLine& line) {
    eachSubclass(dataset.path, kAnnotationCode, [&](std::string_view subclass) {
        int32_t annotation = 0;
        int32_t status = 0;
        call(annopn_, annotation, std::string_view(dataset.path), subclass, status);
        if (status != 0) return;
        int32_t count = 0;
        call(annrec_, annotation, count);
        line.field("annotation/" + std::string(subclass), count);
        call(anncls_, annotation);
    });
}

void dumpAnnotation(Dump& dump, const Dataset& dataset) {
    eachSubclass(dataset.path, kAnnotationCode,
                 [&](std::string_view subclass) { dumpSubclass(dump, dataset, subclass); });
}

}  // namespace program
