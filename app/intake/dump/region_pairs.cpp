#include "app/intake/dump/features.h"
#include "app/intake/dump/subclass_walk.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

namespace {

using qx::call;

constexpr int32_t kPairCode = 89;

bool openPairs(const Dataset& dataset, std::string_view subclass, int32_t& pairs) {
    int32_t status = 0;
    call(rxpopn_, pairs, std::string_view(dataset.path), subclass, status);
    return status == 0;
}

}  // namespace

void countRegionPairs(const Dataset& dataset, JsonLine& line) {
    eachSubclass(dataset.path, kPairCode, [&](std::string_view subclass) {
        int32_t pairs = 0;
        if (!openPairs(dataset, subclass, pairs)) return;
        int32_t count = 0;
        call(rxprec_, pairs, count);
        line.field(std::string("regionPair/").append(subclass), count);
        call(rxpcls_, pairs);
    });
}

void dumpRegionPairs(Dump& dump, const Dataset& dataset) {
    eachSubclass(dataset.path, kPairCode, [&](std::string_view subclass) {
        int32_t pairs = 0;
        if (!openPairs(dataset, subclass, pairs)) return;
        std::array<int32_t, 2> pair{};
        int32_t number = 0;
        int32_t status = 0;
        for (;;) {
            call(rxprd_, pairs, number, pair, status);
            if (status != 0) break;
            JsonLine line(dump.output(), "regionPair");
            line.field("subclass", subclass).field("number", number);
            line.field("pair", std::span<const int32_t>(pair));
        }
        call(rxpcls_, pairs);
    });
}

}  // namespace program
