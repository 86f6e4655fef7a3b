#include "app/intake/dump/features.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

using qx::call;

void countLinks(const Dataset& dataset, JsonLine& line) {
    int32_t links = 0;
    int32_t status = 0;
    call(lnkopn_, links, std::string_view(dataset.path), status);
    if (status != 0) return;
    int32_t count = 0;
    call(lnkrec_, links, count);
    line.field("link", count);
    call(lnkcls_, links);
}

void dumpLinks(Dump& dump, const Dataset& dataset) {
    int32_t links = 0;
    int32_t status = 0;
    call(lnkopn_, links, std::string_view(dataset.path), status);
    if (status != 0) return;
    std::array<double, 4> link{};
    int32_t number = 0;
    for (;;) {
        call(lnkrd_, links, number, link, status);
        if (status != 0) break;
        const std::span<const double> points(link);
        JsonLine line(dump.output(), "link");
        line.field("number", number);
        line.field("from", points.first(2)).field("to", points.last(2));
    }
    call(lnkcls_, links);
}

}  // namespace program
