#include "app/intake/dump/features.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

using qx::call;

void countLabels(const Dataset& dataset, JsonLine& line) {
    int32_t labels = 0;
    int32_t status = 0;
    call(labopn_, labels, std::string_view(dataset.path), status);
    if (status != 0) return;
    int32_t count = 0;
    call(labrec_, labels, count);
    line.field("label", count);
    call(labcls_, labels);
}

void dumpLabels(Dump& dump, const Dataset& dataset) {
    int32_t labels = 0;
    int32_t status = 0;
    call(labopn_, labels, std::string_view(dataset.path), status);
    if (status != 0) return;
    QxLabel label{};
    int32_t number = 0;
    for (;;) {
        call(labrd_, labels, number, label, status);
        if (status != 0) break;
        JsonLine line(dump.output(), "label");
        line.field("number", number).field("userId", label.userId);
        line.field("polygon", label.polygon).field("x", label.x).field("y", label.y);
        line.field("box", std::span<const double>(label.box));
    }
    call(labcls_, labels);
}

}  // namespace program
