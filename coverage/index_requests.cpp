#include "coverage/index_requests.h"

#include "coverage/sections.h"
#include "stream/reader.h"

namespace intake {

namespace {

constexpr std::string_view kEndOfRequests = "EOX";
constexpr std::array<std::string_view, 5> kKeys = {"*  POINTS", "*    ARCS", "*POLYGONS",
                                                   "*    TEXT", "* REGIONS"};

}  // namespace

IndexRequests indexRequests;

void IMPCLR() { indexRequests = {}; }

void IMPSIN(const Name&, Status& status) {
    Line line;
    for (;;) {
        IMPLIN(line);
        if (line == kEndOfRequests) break;
        // A line that is no key asks for something that is not known, and is no fault.
        indexRequests.any = true;
        for (std::size_t kind = 0; kind < kKeys.size(); ++kind) {
            if (line == kKeys[kind]) indexRequests.kinds[kind] = true;
        }
    }
    status = kSuccess;
}

}  // namespace intake
