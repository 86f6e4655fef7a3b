#include "host/qxfeat/arcs.h"
#include "coverage/growing_record.h"
#include "coverage/overflow.h"
#include "coverage/point.h"
#include "coverage/sections.h"
#include "stream/lines.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr int32_t kEndOfArcs = -1;

using ArcRecord = GrowingRecord<QxArc, Point>;

// Two vertices to a line in single precision, with a line also where there is none; else one.
void readVertices(int32_t count, int32_t precision, ArcRecord& record) {
    if (precision != kSingle) {
        for (int32_t vertex = 0; vertex < count; ++vertex) {
            Point* point = record.grow(1);
            IMPLIN<"1P,2E21.14">(point->x, point->y);
        }
        return;
    }
    for (int32_t left = count; left >= 2; left -= 2) {
        Point* point = record.grow(2);
        IMPLIN<"1P,4E14.7">(point[0].x, point[0].y, point[1].x, point[1].y);
    }
    if (count % 2 == 1) {
        Point* point = record.grow(1);
        IMPLIN<"1P,2E14.7">(point->x, point->y);
    } else if (count == 0) {
        Line line;
        IMPLIN(line);
    }
}

}  // namespace

void IMPARC(const Name& dataset, const int32_t& precision, Status& status) {
    Handle arcs{};
    call(arccre_, arcs, dataset, 1, 1, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    bool lossReported = false;
    const auto clearUserId = [&](Line& line) {
        if (!clearOverflow(line, 11) || lossReported) return;
        inform("Arc file, Unavoidable loss of data for Arc User-ID, set to 0");
        warn("Use IDEDIT command with LINE option to recover lost data.");
        lossReported = true;
    };
    ArcRecord record;
    for (;;) {
        QxArc& arc = record.front();
        int32_t number = 0;
        IMPLIN<"7I10">(clearUserId, number, arc.userId, arc.fromNode, arc.toNode, arc.leftPolygon,
                       arc.rightPolygon, arc.vertexCount);
        if (number == kEndOfArcs) break;
        if (arc.vertexCount < 0) fatal("Invalid vertex count (IMPARC)");
        record.clearTail();
        readVertices(arc.vertexCount, precision, record);
        arcwt_(&arcs, &number, record.data());
    }
    status = kSuccess;
    call(arccls_, arcs);
}

}  // namespace intake
