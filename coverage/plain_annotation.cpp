// Annotation of the oldest form: one set without a name, fifteen reals to each.
#include <algorithm>
#include <array>
#include <bit>

#include "coverage/annotation_record.h"
#include "coverage/sections.h"
#include "stream/lines.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr int32_t kEndOfAnnotation = -1;
constexpr int64_t kMostPoints = 500;
// Points 2 to 5 and leader points 1 to 3 are in the file, x before y.
constexpr std::size_t kPoints = 4;
constexpr std::size_t kLeaders = 3;

struct Reals {
    std::array<double, kPoints> x;
    std::array<double, kPoints> y;
    std::array<double, kLeaders> leaderX;
    std::array<double, kLeaders> leaderY;
    double textHeight;
};
using RealValues = std::array<double, 15>;
static_assert(sizeof(Reals) == sizeof(RealValues));

// All of them, whatever the counts say.
Reals readReals(int32_t precision) {
    RealValues values{};
    if (precision == kSingle) {
        for (double* at = values.data(); at != values.data() + values.size(); at += 5) {
            IMPLIN<"1P,5E14.7">(at[0], at[1], at[2], at[3], at[4]);
        }
    } else {
        for (double* at = values.data(); at != values.data() + values.size(); at += 3) {
            IMPLIN<"1P,3E21.14">(at[0], at[1], at[2]);
        }
    }
    return std::bit_cast<Reals>(values);
}

// The anchor is not in the file: point 1 is a copy of point 2. Points that the file has no room
// for are 0.
void placePoints(const Reals& reals, int32_t count, AnnotationRecord& record) {
    record.clearTail();
    if (count > 0) record.add({reals.x[0], reals.y[0]});
    for (int32_t point = 0; point < count - 1; ++point) {
        const auto index = static_cast<std::size_t>(point);
        record.add(index < kPoints ? Point{reals.x[index], reals.y[index]} : Point{});
    }
}

}  // namespace

void IMPTXT(const Name& dataset, const int32_t& precision, Status& status) {
    AnnotationSet set;
    call(anncre_, set.handle, dataset, " ", 1, 1, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    AnnotationRecord record;
    bool pointsCutReported = false;
    for (;;) {
        record.front() = {};
        AnnoRecord& anno = record.front();
        IMPLIN<"5I10">(anno.groupCode, anno.pointCount, anno.leaderCount, anno.textSymbol,
                       anno.textLength);
        if (anno.groupCode == kEndOfAnnotation) break;
        if (anno.pointCount < -1) fatal("Invalid point count (IMPTXT)");
        if (anno.textLength < 0) fatal("Invalid text length (IMPTXT)");
        const Reals reals = readReals(precision);
        anno.textHeight = reals.textHeight;
        for (std::size_t leader = 0; leader < kLeaders; ++leader) {
            anno.leaderPoints[leader][0] = reals.leaderX[leader];
            anno.leaderPoints[leader][1] = reals.leaderY[leader];
        }
        IMPLIN<"1P,E14.7">(anno.symbolSize);
        readText(anno);
        const int64_t points = int64_t{anno.pointCount} + 1;
        if (points > kMostPoints && !pointsCutReported) {
            warn("Annotation: only 500 points are kept");
            pointsCutReported = true;
        }
        anno.pointCount = static_cast<int32_t>(std::min(points, kMostPoints));
        anno.lineTableB[0] = 1;
        placePoints(reals, anno.pointCount, record);
        writeAnnotation(set, record);
    }
    status = kSuccess;
    call(anncls_, set.handle);
}

}  // namespace intake
