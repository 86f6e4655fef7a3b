#include <vector>

#include "coverage/spatial_index/build.h"
#include "coverage/spatial_index/builders.h"
#include "coverage/spatial_index/subclasses.h"
#include "host/qxfeat.h"

namespace intake {

namespace {

constexpr int32_t kAnnotationCode = 16;

void addAnnotation(Handle annotation) {
    AnnoRecord anno{};
    std::vector<double> points(1000);
    Box box{};
    for (int32_t record = 1;;) {
        const auto room = static_cast<int32_t>(points.size() / 2);
        Status status = kSuccess;
        call(annrd_, annotation, anno, points, room, status);
        if (status > kSuccess) {
            call(annbig_, annotation, box, status);
        } else if (status == kSuccess) {
            call(annbox_, anno, points, box);
        }
        if (status != kSuccess) return;
        SPXADD(record++, box, status);
    }
}

}  // namespace

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
