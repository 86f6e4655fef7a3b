// The layers of a triangulated surface: nodes, triangles, hull.
#include <algorithm>

#include "app/intake/export/layers.h"
#include "app/intake/export/surface_parts.h"

namespace program {

namespace {

using formats::GeometryType;
using formats::Value;

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
        const std::span<const double> part(spot);
        const Value values[] = {node.number,
                                node.identifier ? Value(int64_t{*node.identifier}) : Value()};
        target.add(node.number, {{&part, 1}, {}}, values);
    }
    target.end();
}

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
        for (const int32_t node : {a, b, c, a}) ring[corner++] = spotOf(node, spots);
        if (isClockwise(ring[0], ring[1], ring[2])) std::swap(ring[1], ring[2]);
        if (!isWithin(target, boxOf(ring))) continue;
        const std::span<const double> part(ring[0].data(), 12);
        const Value values[] = {triangle.number, shown};
        target.add(triangle.number, {{&part, 1}, {}}, values);
    }
    target.end();
}

void exportHull(Target& target, const std::string& path, const std::vector<Spot>& spots) {
    if (!target.wants("hull")) return;
    target.begin(layerOf("hull", GeometryType::kLineString, "Hull of " + nameOf(path), {"number"}));
    std::vector<datasets::Point> line;
    int64_t fid = 0;
    eachHullRing(path, spots, [&](const std::vector<int32_t>& ring) {
        if (ring.size() == 1) return target.report().loss("hull", "a single node makes no line");
        line.clear();
        for (const int32_t node : ring) {
            const Spot& spot = spotOf(node, spots);
            line.push_back({spot[0], spot[1]});
        }
        line.push_back(line.front());
        const Value number[] = {++fid};
        target.addLine(fid, line, number);
    });
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
