// A surface: its triangles, masked or not, tinted by height and lit.
#include <array>

#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
#include "app/intake/draw/relief.h"
#include "datasets/surfaces.h"

namespace program {

namespace {

struct Node {
    double x;
    double y;
    double z;
};

struct Surface {
    std::vector<Node> nodes;
    std::vector<std::array<Node, 3>> triangles;
    double lowest = 0;
    double highest = 0;
};

Surface readSurface(const Dataset& dataset) {
    Surface surface;
    Extent heightRange;
    for (const datasets::Node& node : datasets::nodes(dataset.path)) {
        if (!node.place) break;
        const double z = node.hasHeight() ? *node.height : std::numeric_limits<double>::quiet_NaN();
        surface.nodes.push_back({node.place->x, node.place->y, z});
        heightRange.add(z, 0);
    }
    if (!heightRange.empty()) {
        surface.lowest = heightRange.xmin;
        surface.highest = heightRange.xmax;
    }
    for (const datasets::Triangle& triangle : datasets::triangles(dataset.path)) {
        if (!triangle.nodes) break;
        std::array<Node, 3> nodes{};
        bool whole = true;
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const int64_t number = (*triangle.nodes)[corner];
            whole = whole && number >= 1 && number <= static_cast<int64_t>(surface.nodes.size());
            if (whole) nodes[corner] = surface.nodes[static_cast<std::size_t>(number - 1)];
            whole = whole && std::isfinite(nodes[corner].z);
        }
        if (whole) surface.triangles.push_back(nodes);
    }
    return surface;
}

// Light on a triangle. Heights are stretched so that the relief shows: they may be in other units
// than the places.
double lightOnTriangle(const std::array<Node, 3>& nodes, double stretch) {
    const auto& [a, b, c] = nodes;
    const double area = (b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y);
    if (area == 0) return 0.7;
    const double east = ((b.z - a.z) * (c.y - a.y) - (c.z - a.z) * (b.y - a.y)) / area;
    const double north = ((c.z - a.z) * (b.x - a.x) - (b.z - a.z) * (c.x - a.x)) / area;
    return lightOn(east * stretch, north * stretch);
}

}  // namespace

Picture pictureOfTin(const Dataset& dataset) {
    Picture picture;
    picture.units = unitsOf(dataset.path);
    const Surface surface = readSurface(dataset);
    for (const Node& node : surface.nodes) picture.extent.add(node.x, node.y);
    const double range = surface.highest - surface.lowest;
    const double side = picture.extent.empty() ? 1 : picture.extent.xmax - picture.extent.xmin;
    const double stretch = range > 0 ? 0.15 * side / range : 1;
    picture.draw = [=](Canvas& canvas, const View& view) {
        for (const std::array<Node, 3>& nodes : surface.triangles) {
            const double mean = (nodes[0].z + nodes[1].z + nodes[2].z) / 3;
            const double height = range > 0 ? (mean - surface.lowest) / range : 0.5;
            const Colour colour = reliefColour(height, lightOnTriangle(nodes, stretch));
            std::array<Place, 4> places;
            for (std::size_t corner = 0; corner < places.size(); ++corner) {
                places[corner] = view.place(nodes[corner % 3].x, nodes[corner % 3].y);
            }
            canvas.area({places.data(), 3}, colour);
            canvas.line(places, colour, 0.4);
        }
    };
    return picture;
}

}  // namespace program
