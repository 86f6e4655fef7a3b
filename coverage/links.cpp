#include "host/qxfeat/links.h"

#include "coverage/sections.h"
#include "stream/format.h"
#include "stream/reader.h"

namespace intake {

namespace {

constexpr std::string_view kEndOfLinks = "END OF LINK DATA";

}  // namespace

void IMPLNK(const Name& dataset, const int32_t& precision, Status& status) {
    Handle links{};
    call(lnkcre_, links, dataset, 1, 1, status);
    if (status != kSuccess) {
        status = kReported;
        return;
    }
    std::array<double, 4> link{};
    Line line;
    for (int32_t number = 1;; ++number) {
        IMPLIN(line);
        if (line == kEndOfLinks) break;
        if (precision == kSingle) {
            read<"1P,4E14.7">(line, link[0], link[1], link[2], link[3]);
        } else {
            read<"1P,2E21.14">(line, link[0], link[1]);
            IMPLIN(line);
            read<"1P,2E21.14">(line, link[2], link[3]);
        }
        call(lnkwt_, links, number, link);
    }
    status = kSuccess;
    call(lnkcls_, links);
}

}  // namespace intake
