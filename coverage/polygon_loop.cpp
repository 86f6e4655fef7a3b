#include "coverage/polygon_loop.h"

#include <array>

#include "host/qxbase/lists.h"
#include "host/qxfeat/polygons.h"
#include "stream/lines.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr int32_t kEndOfPolygons = -1;

// Three integers that pass through as they stand.
using ArcTriplet = std::array<int32_t, 3>;

// The double form has a second line, also behind the count that ends the section.
void readHead(int32_t precision, int32_t& arcCount, std::array<double, 4>& box) {
    if (precision == kSingle) {
        IMPLIN<"I10,1P,4E14.7">(arcCount, box[0], box[1], box[2], box[3]);
        return;
    }
    IMPLIN<"I10,1P,2E21.14">(arcCount, box[0], box[1]);
    IMPLIN<"1P,2E21.14">(box[2], box[3]);
}

// Two arcs to a line, and a line also where there is none. The list keeps the arcs of a longer
// polygon behind these.
void readArcs(Handle arcs, int32_t arcCount) {
    ArcTriplet first;
    ArcTriplet second;
    int32_t index = 0;
    while (arcCount - index >= 2) {
        IMPLIN<"6I10">(first[0], first[1], first[2], second[0], second[1], second[2]);
        call(memput_, arcs, ++index, first);
        call(memput_, arcs, ++index, second);
    }
    if (arcCount - index == 1) {
        IMPLIN<"3I10">(first[0], first[1], first[2]);
        call(memput_, arcs, ++index, first);
    } else if (arcCount == 0) {
        Line line;
        IMPLIN(line);
    }
}

}  // namespace

void makeArcList(Handle& arcs, Status& status) { call(memcre_, 3, arcs, status); }

void readPolygons(Handle polygons, Handle arcs, int32_t precision, std::string_view routine) {
    std::array<double, 4> box{};
    int32_t arcCount = 0;
    for (int32_t number = 1;; ++number) {
        readHead(precision, arcCount, box);
        if (arcCount == kEndOfPolygons) return;
        if (arcCount < 0) fatal("Invalid arc count (%1%)", routine);
        readArcs(arcs, arcCount);
        call(palwtx_, polygons, 1, number, box, arcCount, arcs);
    }
}

}  // namespace intake
