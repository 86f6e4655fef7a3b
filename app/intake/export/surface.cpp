// The layers of a triangulated surface: nodes, triangles, hull.
#include <limits>

#include "app/intake/export/layers.h"
#include "datasets/surfaces.h"

namespace program {

namespace {

using formats::GeometryType;
using formats::Value;

struct Spot {
    double x;
    double y;
    double z;
};

// Nodes by number; one without a height has NaN.
std::vector<Spot> readNodes(const std::string& path) {
    std::vector<Spot> spots;
    for (const datasets::Node& node : datasets::nodes(path)) {
        if (!node.place) break;
        spots.push_back(
            {node.place->x, node.place->y,
             node.hasHeight() ? double{*node.height} : std::numeric_limits<double>::quiet_NaN()});
    }
    return spots;
}

bool isNode(int32_t number, const std::vector<Spot>& spots) {
    return number >= 1 && static_cast<std::size_t>(number) <= spots.size();
}

void exportNodesOf(Target& target, const std::string& path, const std::vector<Spot>& spots) {
    if (!target.wants("nodes")) return;
    target.begin(
        layerOf("nodes", GeometryType::kPointZ, "Nodes of " + nameOf(path), {"number", "id"}));
    for (const datasets::Node& node : datasets::nodes(path)) {
        if (!node.place || static_cast<std::size_t>(node.number) > spots.size()) {
            target.report().loss("nodes", "nodes have no place from this one on",
                                 std::to_string(node.number));
            break;
        }
        if (!isWithin(target, *node.place)) continue;
        const Spot& spot = spots[static_cast<std::size_t>(node.number) - 1];
        const std::span<const double> part(&spot.x, 3);
        const Value values[] = {node.number,
                                node.identifier ? Value(int64_t{*node.identifier}) : Value()};
        target.add(node.number, {{&part, 1}, {}}, values);
    }
    target.end();
}

// A flag a triangle; those behind the mask's end are shown.
class Mask {
  public:
    explicit Mask(const std::string& path) : words_(datasets::mask(path)) {}
    // Asked in order.
    bool shows() {
        if (bit_ < 0) {
            bit_ = 31;
            there_ = there_ && words_.next();
        }
        const int at = bit_--;
        return !there_ || (words_.current() >> at & 1U) != 0;
    }

  private:
    datasets::Range<datasets::SingleCursor<uint32_t>> words_;
    bool there_ = true;
    int bit_ = -1;
};

void exportTriangles(Target& target, const std::string& path, const std::vector<Spot>& spots) {
    if (!target.wants("triangles")) return;
    target.begin(layerOf("triangles", GeometryType::kPolygonZ, "Triangles of " + nameOf(path),
                         {"number", "shown"}));
    Mask mask(path);
    for (const datasets::Triangle& triangle : datasets::triangles(path)) {
        if (!triangle.nodes) {
            target.report().loss("triangles", "triangles have no corners from this one on",
                                 std::to_string(triangle.number));
            break;
        }
        const int64_t shown = mask.shows() ? 1 : 0;
        const auto& [a, b, c] = *triangle.nodes;
        if (!isNode(a, spots) || !isNode(b, spots) || !isNode(c, spots)) {
            target.report().loss("triangles", "a corner is no node",
                                 std::to_string(triangle.number));
            continue;
        }
        std::array<Spot, 4> ring{};
        std::size_t corner = 0;
        for (const int32_t node : {a, b, c, a})
            ring[corner++] = spots[static_cast<std::size_t>(node) - 1];
        // Counter-clockwise from above.
        if ((ring[1].x - ring[0].x) * (ring[2].y - ring[0].y) <
            (ring[2].x - ring[0].x) * (ring[1].y - ring[0].y)) {
            std::swap(ring[1], ring[2]);
        }
        const datasets::Box box = {std::min({ring[0].x, ring[1].x, ring[2].x}),
                                   std::min({ring[0].y, ring[1].y, ring[2].y}),
                                   std::max({ring[0].x, ring[1].x, ring[2].x}),
                                   std::max({ring[0].y, ring[1].y, ring[2].y})};
        if (!isWithin(target, box)) continue;
        const std::span<const double> part(&ring[0].x, 12);
        const Value values[] = {triangle.number, shown};
        target.add(triangle.number, {{&part, 1}, {}}, values);
    }
    target.end();
}

// The hull's numbers name nodes around the surface; one that names none parts two rings.
void exportHull(Target& target, const std::string& path, const std::vector<Spot>& spots) {
    if (!target.wants("hull")) return;
    target.begin(layerOf("hull", GeometryType::kLineString, "Hull of " + nameOf(path), {"number"}));
    std::vector<datasets::Point> line;
    int64_t fid = 0;
    const auto finish = [&] {
        if (line.size() > 1) {
            line.push_back(line.front());
            const Value number[] = {++fid};
            target.addLine(fid, line, number);
        } else if (!line.empty()) {
            target.report().loss("hull", "a single node makes no line");
        }
        line.clear();
    };
    for (const int32_t number : datasets::hull(path)) {
        if (isNode(number, spots)) {
            const Spot& spot = spots[static_cast<std::size_t>(number) - 1];
            line.push_back({spot.x, spot.y});
        } else {
            finish();
        }
    }
    finish();
    target.end();
}

}  // namespace

void exportSurface(Target& target, const datasets::Dataset& dataset) {
    const std::vector<Spot> spots = readNodes(dataset.path);
    exportNodesOf(target, dataset.path, spots);
    exportTriangles(target, dataset.path, spots);
    exportHull(target, dataset.path, spots);
    exportTables(target, dataset.path);
    exportTexts(target, dataset.path);
}

}  // namespace program
