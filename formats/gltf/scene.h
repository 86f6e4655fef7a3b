// The JSON of a mesh in glTF: what lies where in the binary part, and what it means.
#ifndef FORMATS_GLTF_SCENE_H
#define FORMATS_GLTF_SCENE_H

#include <cstdint>
#include <string>

#include "formats/gltf/positions.h"

namespace formats::gltf {

class Scene {
  public:
    // The binary part has positions, normals, codes, triangles, hull and break lines one behind the
    // other.
    Scene(const Mesh& mesh, const Positions& positions);

    const std::string& json() const { return json_; }
    uint64_t binaryBytes() const { return bytes_; }

  private:
    void addAccessor(std::size_t records, std::size_t components, std::string_view rest,
                     bool isIndex);
    // The indices are an accessor, or below 0 for none.
    void addPrimitive(int mode, std::string_view material, std::string_view attributes,
                      int indices);
    void describeNode(const Mesh& mesh, const Positions& positions);

    std::string json_;
    std::string views_;
    std::string accessors_;
    std::string primitives_;  // with a material each
    std::string materials_;
    int primitiveCount_ = 0;
    uint64_t bytes_ = 0;
};

}  // namespace formats::gltf

#endif
