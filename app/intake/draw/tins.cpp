// A surface: its triangles, but for those that its mask hides, tinted by height and lit.
#include <array>

#include "app/intake/draw/draw.h"
#include "app/intake/draw/palette.h"
#include "app/intake/draw/relief.h"
#include "app/intake/export/surface_parts.h"
#include "app/intake/interrupts.h"
#include "datasets/surfaces.h"

namespace program {

namespace {

using Corners = std::array<Spot, 3>;

struct Surface {
    std::vector<Spot> nodes;
    std::vector<Corners> triangles;
    double lowest = 0;
    double highest = 0;
};

Surface readSurface(const Dataset& dataset) {
    Surface surface;
    surface.nodes = readNodes(dataset.path);
    Extent heightRange;
    for (const Spot& node : surface.nodes) heightRange.add(node[2], 0);
    if (!heightRange.empty()) {
        surface.lowest = heightRange.xmin;
        surface.highest = heightRange.xmax;
    }
    Mask mask(dataset.path);
    for (const datasets::Triangle& triangle : datasets::triangles(dataset.path)) {
        if (!triangle.nodes) break;
        bool whole = mask.shows();
        Corners corners{};
        for (std::size_t corner = 0; whole && corner < 3; ++corner) {
            const int32_t number = (*triangle.nodes)[corner];
            whole = isNode(number, surface.nodes);
            if (whole) corners[corner] = spotOf(number, surface.nodes);
            whole = whole && std::isfinite(corners[corner][2]);
        }
        if (whole) surface.triangles.push_back(corners);
    }
    return surface;
}

// Light on a triangle. Heights are stretched so that the relief shows: they may be in other units
// than the places.
double lightOnTriangle(const Corners& corners, double stretch) {
    const auto& [a, b, c] = corners;
    const double area = (b[0] - a[0]) * (c[1] - a[1]) - (c[0] - a[0]) * (b[1] - a[1]);
    if (area == 0) return 0.7;
    const double east = ((b[2] - a[2]) * (c[1] - a[1]) - (c[2] - a[2]) * (b[1] - a[1])) / area;
    const double north = ((c[2] - a[2]) * (b[0] - a[0]) - (b[2] - a[2]) * (c[0] - a[0])) / area;
    return lightOn(east * stretch, north * stretch);
}

}  // namespace

Picture pictureOfTin(const Dataset& dataset) {
    Picture picture;
    picture.units = unitsOf(dataset.path);
    const Surface surface = readSurface(dataset);
    for (const Spot& node : surface.nodes) picture.extent.add(node[0], node[1]);
    const double range = surface.highest - surface.lowest;
    const double side = picture.extent.empty() ? 1 : picture.extent.xmax - picture.extent.xmin;
    const double stretch = range > 0 ? 0.15 * side / range : 1;
    picture.draw = [=](Canvas& canvas, const View& view) {
        for (const Corners& corners : surface.triangles) {
            throwIfInterrupted();
            const double mean = (corners[0][2] + corners[1][2] + corners[2][2]) / 3;
            const double height = range > 0 ? (mean - surface.lowest) / range : 0.5;
            const Colour colour = reliefColour(height, lightOnTriangle(corners, stretch));
            std::array<Place, 4> places;
            for (std::size_t corner = 0; corner < places.size(); ++corner) {
                places[corner] = view.place(corners[corner % 3][0], corners[corner % 3][1]);
            }
            canvas.area({places.data(), 3}, colour);
            canvas.line(places, colour, 0.4);
        }
    };
    return picture;
}

}  // namespace program
