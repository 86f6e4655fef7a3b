// Indexes of the features that are one file to a coverage, and of the regions, which are polygons.
#include "coverage/spatial_index/build.h"
#include "coverage/spatial_index/builders.h"
#include "coverage/spatial_index/subclasses.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "stream/report.h"

namespace intake {

namespace {

// Takes in the boxes of an open polygon file, from its first record to its last.
void addPolygons(Handle polygons) {
    QxPolygon polygon{};
    int32_t record = 0;
    Status status = kSuccess;
    int32_t noArcs[3];
    for (;;) {
        call(palrd_, polygons, record, polygon, &noArcs[0], 0, status);
        if (status != kSuccess) return;
        Box box;
        std::memcpy(box.data(), polygon.box, sizeof box);
        SPXADD(record, box, status);
    }
}

}  // namespace

Status indexLabels(const Name& coverage, const Box& extent) {
    Handle labels{};
    Status status = kSuccess;
    int32_t count = 0;
    call(labopn_, labels, coverage, status);
    if (status != kSuccess) return kNoFeatures;
    call(labrec_, labels, count);
    SPXBGN(count, extent, status);
    QxLabel label{};
    int32_t record = 0;
    for (;;) {
        call(labrd_, labels, record, label, status);
        if (status != kSuccess) break;
        SPXADD(record, {label.x, label.y, label.x, label.y}, status);
    }
    call(labcls_, labels);
    SPXEND(coverage, "", kPointKind, status);
    return status == kSuccess ? kSuccess : kNoIndex;
}

Status indexArcs(const Name& coverage, const Box& extent) {
    Handle arcs{};
    Status status = kSuccess;
    int32_t count = 0;
    call(arcopn_, arcs, coverage, status);
    if (status != kSuccess) return kNoFeatures;
    call(arcrec_, arcs, count);
    SPXBGN(count, extent, status);
    Box box{};
    for (int32_t record = 1;; ++record) {
        call(arcbox_, arcs, box, status);
        if (status != kSuccess) break;
        SPXADD(record, box, status);
    }
    call(arccls_, arcs);
    SPXEND(coverage, "", kArcKind, status);
    return status == kSuccess ? kSuccess : kNoIndex;
}

Status indexPolygons(const Name& coverage, const Box& extent) {
    Handle polygons{};
    Status status = kSuccess;
    int32_t count = 0;
    call(palopn_, polygons, coverage, 1, int32_t{QX_POLYGON_ARCS}, status);
    if (status != kSuccess) {
        int32_t boxesExist = 0;
        call(pffexi_, coverage, boxesExist);
        return boxesExist != 0 ? kBoxesOnly : kNoFeatures;
    }
    call(palrec_, polygons, count);
    SPXBGN(count, extent, status);
    addPolygons(polygons);
    call(palcls_, polygons);
    SPXEND(coverage, "", kPolygonKind, status);
    return status == kSuccess ? kSuccess : kNoIndex;
}

Status indexRegions(const Name& coverage, const Box& extent) {
    constexpr int32_t kRegionCode = 90;
    constexpr int32_t kPairCode = 89;
    bool sound = true;
    const bool opened = eachSubclass(coverage, kPairCode, kRegionCode, [&](const auto& subclass) {
        int32_t withoutTopology = 0;
        call(rxpprl_, coverage, subclass, withoutTopology);
        if (withoutTopology == 1) {
            warn("Coverage %1% does not contain region topology for subclass %2%", coverage,
                 subclass);
            return;
        }
        Name path;
        Handle regions{};
        Status status = kSuccess;
        int32_t count = 0;
        call(fname_, coverage, subclass, path, kRegionCode);
        call(palopn_, regions, path, 1, int32_t{QX_POLYGON_PATH}, status);
        if (status != kSuccess) return;
        call(palrec_, regions, count);
        SPXBGN(count, extent, status);
        if (status != kSuccess) {
            call(palcls_, regions);
            return;
        }
        addPolygons(regions);
        call(palcls_, regions);
        SPXEND(coverage, subclass.view(), kRegionKind, status);
        sound &= status == kSuccess;
    });
    return opened && sound ? kSuccess : kNoFeatures;
}

}  // namespace intake
