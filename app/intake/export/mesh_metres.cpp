#include "app/intake/export/mesh_metres.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "app/intake/export/surface_parts.h"

namespace program {

namespace {

// Metres to a unit of heights; 0 where the text does not say.
double heightMetres(const std::string& units) {
    if (units == "METERS" || units == "METRES") return 1;
    if (units == "FEET") return 1200.0 / 3937;
    return 0;
}

}  // namespace

std::array<double, 3> metresOf(const formats::Mesh& mesh) {
    constexpr double kDegree = 111319.49;
    const datasets::Box box = boxOf(mesh.vertices);
    const double height = heightMetres(mesh.system.heightUnits);
    if (mesh.system.geographic()) {
        const double degrees = mesh.system.perUnit > 0 ? mesh.system.perUnit : 1;
        const double middle = (box[1] / 2 + box[3] / 2) * degrees * std::numbers::pi / 180;
        const double along = std::isfinite(middle) ? std::max(std::cos(middle), 0.01) : 1;
        return {degrees * kDegree * along, degrees * kDegree, height > 0 ? height : 1};
    }
    if (mesh.system.perUnit > 0) {
        const double unit = mesh.system.perUnit;
        return {unit, unit, height > 0 ? height : unit};
    }
    double lowest = 0;
    double highest = 0;
    for (const formats::Mesh::Vertex& vertex : mesh.vertices) {
        lowest = &vertex == &mesh.vertices[0] ? vertex[2] : std::min(lowest, vertex[2]);
        highest = &vertex == &mesh.vertices[0] ? vertex[2] : std::max(highest, vertex[2]);
    }
    const double side = std::max(box[2] - box[0], box[3] - box[1]);
    const double range = highest - lowest;
    return {1, 1, side > 0 && range > side ? 0.15 * side / range : 1};
}

}  // namespace program
