// The vertices of a mesh in single precision, and which way the surface looks at each.
#ifndef FORMATS_GLTF_POSITIONS_H
#define FORMATS_GLTF_POSITIONS_H

#include <array>
#include <vector>

#include "formats/mesh_writer.h"

namespace formats::gltf {

using Triple = std::array<float, 3>;

class Positions {
  public:
    // Throws a std::runtime_error if the vertices are too far apart for single precision.
    explicit Positions(const Mesh& mesh);

    // The middle of the box in x and y, and the lowest z.
    const Mesh::Vertex& origin() const { return origin_; }
    const std::vector<Triple>& positions() const { return positions_; }
    const Triple& least() const { return least_; }
    const Triple& greatest() const { return greatest_; }
    // Unit vectors, one a vertex: upwards where no triangle says otherwise. None without triangles.
    const std::vector<Triple>& normals() const { return normals_; }

  private:
    Mesh::Vertex origin_{};
    std::vector<Triple> positions_;
    std::vector<Triple> normals_;
    Triple least_{};
    Triple greatest_{};
};

}  // namespace formats::gltf

#endif
