#include "app/intake/dump/features.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

using qx::call;

void countArcs(const Dataset& dataset, JsonLine& line) {
    int32_t arcs = 0;
    int32_t status = 0;
    call(arcopn_, arcs, std::string_view(dataset.path), status);
    if (status != 0) return;
    int32_t count = 0;
    call(arcrec_, arcs, count);
    line.field("arc", count);
    call(arccls_, arcs);
}

void dumpArcs(Dump& dump, const Dataset& dataset) {
    int32_t arcs = 0;
    int32_t status = 0;
    call(arcopn_, arcs, std::string_view(dataset.path), status);
    if (status != 0) return;
    QxArc arc{};
    int32_t number = 0;
    std::vector<double> vertices(1000);
    for (;;) {
        const auto room = static_cast<int32_t>(vertices.size() / 2);
        call(arcrd_, arcs, number, arc, vertices, room, status);
        if (status > 0) {
            vertices.resize(static_cast<std::size_t>(arc.vertexCount) * 2);
            continue;
        }
        if (status != 0) break;
        JsonLine line(dump.output(), "arc");
        line.field("number", number).field("userId", arc.userId);
        line.field("fromNode", arc.fromNode).field("toNode", arc.toNode);
        line.field("leftPolygon", arc.leftPolygon).field("rightPolygon", arc.rightPolygon);
        line.key("vertices")
            .pairs({vertices.data(), static_cast<std::size_t>(arc.vertexCount) * 2});
    }
    call(arccls_, arcs);
}

}  // namespace program
