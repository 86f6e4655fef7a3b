#include "coverage/polygon_loop.h"
#include "coverage/sections.h"
#include "host/qxbase/lists.h"
#include "host/qxfeat/polygons.h"
#include "host/qxfeat/region_pairs.h"
#include "stream/lines.h"

namespace intake {

namespace {

constexpr std::string_view kEndOfSubclasses = "JABBERWOCKY";
constexpr int32_t kEndOfPairs = -1;

using Subclass = FixedText<13>;

// The name that opens a group; false behind the last group.
bool readSubclass(Subclass& subclass) {
    Line line;
    IMPLIN(line);
    read<"A13">(line, subclass);
    return !(subclass == kEndOfSubclasses);
}

void readPairs(Handle pairs) {
    int32_t pair[2];
    Status status = kSuccess;
    for (int32_t number = 1;; ++number) {
        IMPLIN<"2I10">(pair[0], pair[1]);
        if (pair[0] == kEndOfPairs) return;
        call(rxpwt_, pairs, +pair, number, status);
    }
}

}  // namespace

void IMPRXP(const Name& dataset, const int32_t&, Status& status) {
    Subclass subclass;
    while (readSubclass(subclass)) {
        Handle pairs{};
        call(rxpcre_, pairs, dataset, subclass, status);
        if (status != kSuccess) {
            status = kReported;
            return;
        }
        readPairs(pairs);
        call(rxpcls_, pairs);
    }
    status = kSuccess;
}

void IMPRPL(const Name& dataset, const int32_t& precision, Status& status) {
    Subclass subclass;
    while (readSubclass(subclass)) {
        Handle regions{};
        Handle arcs{};
        call(palcre3_, regions, dataset, subclass, 1, status);
        if (status == kSuccess) makeArcList(arcs, status);
        if (status != kSuccess) {
            status = kReported;
            return;
        }
        readPolygons(regions, arcs, precision, "IMPRPL");
        call(palcls_, regions);
        call(memdel_, arcs);
    }
    status = kSuccess;
}

}  // namespace intake
