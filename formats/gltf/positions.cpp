#include "formats/gltf/positions.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace formats::gltf {

namespace {

Mesh::Vertex originOf(const std::vector<Mesh::Vertex>& vertices) {
    if (vertices.empty()) return {};
    Mesh::Vertex least = vertices.front();
    Mesh::Vertex greatest = least;
    for (const Mesh::Vertex& vertex : vertices) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            least[axis] = std::min(least[axis], vertex[axis]);
            greatest[axis] = std::max(greatest[axis], vertex[axis]);
        }
    }
    return {least[0] / 2 + greatest[0] / 2, least[1] / 2 + greatest[1] / 2, least[2]};
}

// Square to the triangle, as long as twice its area.
Mesh::Vertex squareTo(const Mesh::Vertex& a, const Mesh::Vertex& b, const Mesh::Vertex& c) {
    const Mesh::Vertex u = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
    const Mesh::Vertex v = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

Triple unit(const Mesh::Vertex& vector) {
    const double length = std::hypot(vector[0], vector[1], vector[2]);
    if (!(length > 0) || !std::isfinite(length)) return {0, 0, 1};
    return {static_cast<float>(vector[0] / length), static_cast<float>(vector[1] / length),
            static_cast<float>(vector[2] / length)};
}

std::vector<Triple> normalsOf(const Mesh& mesh) {
    std::vector<Mesh::Vertex> sums(mesh.vertices.size());
    for (const Mesh::Triangle& triangle : mesh.triangles) {
        const auto& [a, b, c] = triangle;
        const Mesh::Vertex square = squareTo(mesh.vertices[a], mesh.vertices[b], mesh.vertices[c]);
        for (const uint32_t corner : triangle) {
            for (std::size_t axis = 0; axis < 3; ++axis) sums[corner][axis] += square[axis];
        }
    }
    std::vector<Triple> normals;
    normals.reserve(sums.size());
    for (const Mesh::Vertex& sum : sums) normals.push_back(unit(sum));
    return normals;
}

}  // namespace

Positions::Positions(const Mesh& mesh) : origin_(originOf(mesh.vertices)) {
    positions_.reserve(mesh.vertices.size());
    for (const Mesh::Vertex& vertex : mesh.vertices) {
        Triple position;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            // A real of 64 bits beyond the range of 32 must not be turned into one.
            const double offset = vertex[axis] - origin_[axis];
            if (!(std::fabs(offset) < 1e38)) {
                throw std::runtime_error(mesh.name +
                                         ": its nodes are too far apart for single precision");
            }
            position[axis] = static_cast<float>(offset);
        }
        if (positions_.empty()) least_ = greatest_ = position;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            least_[axis] = std::min(least_[axis], position[axis]);
            greatest_[axis] = std::max(greatest_[axis], position[axis]);
        }
        positions_.push_back(position);
    }
    if (!mesh.triangles.empty()) normals_ = normalsOf(mesh);
}

}  // namespace formats::gltf
