// What every writer of surfaces takes: one mesh of triangles, wholly in memory.
#ifndef FORMATS_MESH_WRITER_H
#define FORMATS_MESH_WRITER_H

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "formats/writer.h"

namespace formats {

struct Mesh {
    using Vertex = std::array<double, 3>;  // x, y, z, all finite
    using Triangle = std::array<uint32_t, 3>;
    using Edge = std::array<uint32_t, 2>;

    std::string name;  // UTF-8, as all its texts
    std::vector<Vertex> vertices;
    std::vector<int32_t> codes;  // one a vertex, or none at all
    // Of vertices counted from 0; triangles go counter-clockwise as seen from above.
    std::vector<Triangle> triangles;
    std::vector<Edge> hull;
    std::vector<Edge> breakLines;

    crs::ReferenceSystem system;
    // About how many metres a unit of x, y and z has, for who shows it.
    std::array<double, 3> metres = {1, 1, 1};
    // Kept as texts of the whole output.
    struct Note {
        std::string name;  // "projection"
        std::string content;
    };
    std::vector<Note> notes;
};

class MeshWriter {
  public:
    virtual ~MeshWriter() = default;
    // The output appears under its name when it is whole. Throws a std::runtime_error, with
    // nothing left behind, for what fails and for a mesh that the format cannot hold.
    virtual void write(const std::string& path, const Mesh& mesh, const Options& options) const = 0;
};

}  // namespace formats

#endif
