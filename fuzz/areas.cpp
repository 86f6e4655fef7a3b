// Areas out of arcs between the points of a small grid. The bytes: lists of points as arcs, each
// ended by 255; behind an empty one, numbers of arcs.
#include <vector>

#include "fuzz/scratch.h"
#include "topology/assembler.h"
#include "topology/ring.h"

namespace {

class Arcs : public topology::ArcSource {
  public:
    std::vector<std::vector<topology::Point>> arcs;
    std::size_t given = 0;
    bool vertices(int32_t number, std::span<const double>& pairs) override {
        if (number < 1 || static_cast<std::size_t>(number) > arcs.size()) return false;
        const auto& arc = arcs[static_cast<std::size_t>(number) - 1];
        pairs = topology::pairsOf(arc);
        given += arc.size();
        return true;
    }
};

void check(const topology::Shape& shape, std::size_t given) {
    std::size_t ring = 0, points = 0;
    for (const uint32_t count : shape.ringCounts) {
        topology::Box outer{};
        for (uint32_t each = 0; each < count; ++each, ++ring) {
            const auto vertices = shape.ring(ring);
            points += vertices.size();
            fuzz::require(vertices.size() >= 4 && vertices.front() == vertices.back(), "a ring");
            const double area = topology::areaOf(vertices);
            const topology::Box box = topology::boxOf(vertices);
            fuzz::require(area != 0 && (area > 0) == (each == 0), "its way round");
            if (each == 0) outer = box;
            fuzz::require(outer.holds(box), "a hole in its outer ring");
        }
    }
    fuzz::require(ring == shape.rings(), "all rings belong to polygons");
    for (std::size_t line = 0; line < shape.lines(); ++line) points += shape.line(line).size();
    // An arc's last vertex is left out where the next arc begins; a ring has its first one twice.
    fuzz::require(points <= 2 * given, "no more comes out than went in");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    Arcs arcs;
    std::size_t at = 0;
    for (bool empty = false; at < size && !empty;) {
        std::vector<topology::Point> arc;
        for (; at < size && data[at] != 255; ++at) {
            arc.push_back({static_cast<double>(data[at] / 16), static_cast<double>(data[at] % 16)});
        }
        ++at;
        empty = arc.empty();
        if (!empty) arcs.arcs.push_back(std::move(arc));
    }
    std::vector<int32_t> list;
    for (; at < size; ++at) list.push_back(static_cast<int8_t>(data[at]));
    topology::Assembler assembler(arcs);
    const topology::Shape& shape = assembler.assemble(list);
    check(shape, arcs.given);
    return 0;
}
