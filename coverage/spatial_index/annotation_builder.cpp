#include <cmath>
#include <vector>

#include "coverage/spatial_index/build.h"
#include "coverage/spatial_index/builders.h"
#include "coverage/spatial_index/subclasses.h"
#include "host/qxfeat.h"

namespace intake {

namespace {

constexpr int32_t kAnnotationCode = 16;

Box enlarged(const Box& box, double by) {
    return {box[0] - by, box[1] - by, box[2] + by, box[3] + by};
}

Box spanned(double x1, double y1, double x2, double y2) {
    return {std::fmin(x1, x2), std::fmin(y1, y2), std::fmax(x1, x2), std::fmax(y1, y2)};
}

void addAnnotation(Handle annotation) {
    AnnoRecord anno{};
    std::vector<double> points(1000);
    Box box{};
    for (int32_t record = 1;;) {
        const auto room = static_cast<int32_t>(points.size() / 2);
        Status status = kSuccess;
        call(annrd_, annotation, anno, points, room, status);
        if (status > kSuccess) {
            points.resize(static_cast<std::size_t>(anno.pointCount) * 2);
            continue;
        }
        if (status != kSuccess) return;
        placeAnnotation(anno, points.data(), box);
        SPXADD(record++, box, status);
    }
}

}  // namespace

void placeAnnotation(const AnnoRecord& anno, const double* points, Box& box) {
    const double height = anno.textHeight;
    const double length = anno.textLength * height;
    if (anno.pointCount == 1) {
        box = {points[0], points[1], points[0] + length, points[1] + height};
    } else if (anno.pointCount == 2) {
        // The text runs from the first point towards the second, by its own length.
        const double dx = points[2] - points[0];
        const double dy = points[3] - points[1];
        const double distance = std::hypot(dx, dy);
        const double share = distance == 0 ? 0 : length / distance;
        box = enlarged(
            spanned(points[0], points[1], points[0] + share * dx, points[1] + share * dy), height);
    } else if (anno.pointCount > 2) {
        Box around;
        call(boxfd2_, points, anno.pointCount, around);
        box = enlarged(around, height);
    }
}

Status indexAnnotation(const Name& coverage, const Box& extent) {
    bool sound = true;
    const bool opened =
        eachSubclass(coverage, kAnnotationCode, kAnnotationCode, [&](const auto& subclass) {
            Handle annotation{};
            Status status = kSuccess;
            int32_t count = 0;
            call(annopn_, annotation, coverage, subclass, status);
            if (status != kSuccess) return;
            call(annrec_, annotation, count);
            SPXBGN(count, extent, status);
            addAnnotation(annotation);
            call(anncls_, annotation);
            SPXEND(coverage, subclass.view(), kAnnotationKind, status);
            sound &= status == kSuccess;
        });
    return opened && sound ? kSuccess : kNoFeatures;
}

}  // namespace intake
