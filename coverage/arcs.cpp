#include "host/qxfeat/arcs.h"
#include "coverage/growing_record.h"
#include "coverage/overflow.h"
#include "coverage/point.h"
#include "coverage/sections.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr int32_t kEndOfArcs = -1;

using ArcRecord = GrowingRecord<QxArc, Point>;

// Two vertices to a line in single precision, with a line also where there is none; else one.
void readVertices(int32_t count, int32_t precision, ArcRecord& record) {
    Line line;
    Point point;
    if (precision != kSingle) {
        for (int32_t vertex = 0; vertex < count; ++vertex) {
            IMPLIN(line);
            read<"1P,2E21.14">(line, point.x, point.y);
            record.add(point);
        }
        return;
    }
    const int32_t lines = (count - 1) / 2 + 1;
    int32_t left = count;
    for (int32_t number = 0; number < lines; ++number, left -= 2) {
        IMPLIN(line);
        Point second;
        if (left >= 2) {
            read<"1P,4E14.7">(line, point.x, point.y, second.x, second.y);
            record.add(point);
            record.add(second);
        } else if (left == 1) {
            read<"1P,2E14.7">(line, point.x, point.y);
            record.add(point);
        }
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
    ArcRecord record;
    Line line;
    for (;;) {
        IMPLIN(line);
        if (clearOverflow(line, 11) && !lossReported) {
            inform("Arc file, Unavoidable loss of data for Arc User-ID, set to 0");
            warn("Use IDEDIT command with LINE option to recover lost data.");
            lossReported = true;
        }
        QxArc& arc = record.front();
        int32_t number = 0;
        read<"7I10">(line, number, arc.userId, arc.fromNode, arc.toNode, arc.leftPolygon,
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
