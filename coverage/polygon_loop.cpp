#include "coverage/polygon_loop.h"

#include <array>

#include "host/qxbase/lists.h"
#include "host/qxfeat/polygons.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr int32_t kEndOfPolygons = -1;

// Three integers that pass through as they stand.
using ArcTriplet = std::array<int32_t, 3>;

// The double form has a second line, also behind the count that ends the section.
void readHead(int32_t precision, int32_t& arcCount, std::array<double, 4>& box) {
    Line line;
    IMPLIN(line);
    if (precision == kSingle) {
        read<"I10,1P,4E14.7">(line, arcCount, box[0], box[1], box[2], box[3]);
        return;
    }
    read<"I10,1P,2E21.14">(line, arcCount, box[0], box[1]);
    IMPLIN(line);
    read<"1P,2E21.14">(line, box[2], box[3]);
}

// Two arcs to a line, and a line also where there is none. The list keeps the arcs of a longer
// polygon behind these.
void readArcs(Handle arcs, int32_t arcCount) {
    Line line;
    ArcTriplet first;
    ArcTriplet second;
    const int32_t lines = (arcCount - 1) / 2 + 1;
    int32_t index = 0;
    for (int32_t number = 0; number < lines; ++number) {
        IMPLIN(line);
        if (arcCount - index >= 2) {
            read<"6I10">(line, first[0], first[1], first[2], second[0], second[1], second[2]);
            call(memput_, arcs, ++index, first);
            call(memput_, arcs, ++index, second);
        } else if (arcCount - index == 1) {
            read<"3I10">(line, first[0], first[1], first[2]);
            call(memput_, arcs, ++index, first);
        }
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
