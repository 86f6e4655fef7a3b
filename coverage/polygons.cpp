#include "host/qxfeat/polygons.h"

#include "coverage/polygon_loop.h"
#include "coverage/sections.h"
#include "host/qxbase/lists.h"
#include "stream/lines.h"

namespace intake {

namespace {

constexpr std::string_view kEndOfBoxes =
    "        -1         0         0         0         0         0         0";

// The next box; false at the end. A line without a point is the end or nothing.
bool readSingleBox(QxPolygon& polygon) {
    double* box = polygon.box;
    if (!takeLine<"I10,1P,4E14.7">(polygon.arcCount, box[0], box[1], box[2], box[3])) {
        Line line;
        do {
            IMPLIN(line);
            if (line == kEndOfBoxes) return false;
        } while (line.full().find('.') == std::string_view::npos);
        read<"I10,1P,4E14.7">(line, polygon.arcCount, box[0], box[1], box[2], box[3]);
    }
    polygon.arcCount = 0;
    return true;
}

// No second line follows the end here, as one does where polygons have arcs, and the integer is
// kept as it was read. Stays.
bool readDoubleBox(QxPolygon& polygon) {
    double* box = polygon.box;
    IMPLIN<"I10,1P,2E21.14">(polygon.arcCount, box[0], box[1]);
    if (polygon.arcCount == -1) return false;
    IMPLIN<"1P,2E21.14">(box[2], box[3]);
    return true;
}

}  // namespace

void IMPPAL(const Name& dataset, const int32_t& precision, Status& status) {
    Handle polygons{};
    Handle arcs{};
    call(palcre_, polygons, dataset, 1, int32_t{QX_POLYGON_ARCS}, status);
    if (status == kSuccess) makeArcList(arcs, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    readPolygons(polygons, arcs, precision, "IMPPAL");
    status = kSuccess;
    call(palcls_, polygons);
    call(memdel_, arcs);
}

void IMPPFF(const Name& dataset, const int32_t& precision, Status& status) {
    Handle boxes{};
    call(palcre_, boxes, dataset, 1, int32_t{QX_POLYGON_BOXES}, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    QxPolygon polygon{};
    for (int32_t number = 1;; ++number) {
        const bool more = precision == kSingle ? readSingleBox(polygon) : readDoubleBox(polygon);
        if (!more) break;
        call(palwt_, boxes, number, &polygon);
    }
    status = kSuccess;
    call(palcls_, boxes);
}

}  // namespace intake
