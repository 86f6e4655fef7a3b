#include "host/qxfeat/links.h"

#include "coverage/sections.h"
#include "stream/lines.h"

namespace intake {

namespace {

constexpr std::string_view kEndOfLinks = "END OF LINK DATA";

// The next link; false at the end.
bool readLink(int32_t precision, std::array<double, 4>& link) {
    const bool single = precision == kSingle;
    if (!(single ? takeLine<"1P,4E14.7">(link[0], link[1], link[2], link[3])
                 : takeLine<"1P,2E21.14">(link[0], link[1]))) {
        Line line;
        IMPLIN(line);
        if (line == kEndOfLinks) return false;
        if (single) {
            read<"1P,4E14.7">(line, link[0], link[1], link[2], link[3]);
        } else {
            read<"1P,2E21.14">(line, link[0], link[1]);
        }
    }
    if (!single) IMPLIN<"1P,2E21.14">(link[2], link[3]);
    return true;
}

}  // namespace

void IMPLNK(const Name& dataset, const int32_t& precision, Status& status) {
    Handle links{};
    call(lnkcre_, links, dataset, 1, 1, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    std::array<double, 4> link{};
    for (int32_t number = 1; readLink(precision, link); ++number) {
        call(lnkwt_, links, number, link);
    }
    status = kSuccess;
    call(lnkcls_, links);
}

}  // namespace intake
