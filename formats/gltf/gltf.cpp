#include "formats/gltf/gltf.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include "formats/gltf/positions.h"
#include "formats/gltf/scene.h"
#include "formats/little_endian.h"
#include "formats/output.h"

namespace formats::gltf {

namespace {

constexpr uint64_t kFileHead = 12;
constexpr uint64_t kChunkHead = 8;

void chunkHead(std::string& text, std::size_t bytes, std::string_view type) {
    appendLittleEndian(text, static_cast<uint32_t>(bytes));
    text += type;
}

template <class Records>
void append(TextFile& file, const Records& records) {
    for (const auto& each : records) {
        appendLittleEndian(file.text(), each);
        file.written();
    }
}

class Writer : public MeshWriter {
  public:
    void write(const std::string& path, const Mesh& mesh, const Options& options) const override {
        const Positions positions(mesh);
        const Scene scene(mesh, positions);
        std::string json = scene.json();
        json.resize((json.size() + 3) / 4 * 4, ' ');
        const uint64_t bytes = kFileHead + kChunkHead + json.size() +
                               (scene.binaryBytes() == 0 ? 0 : kChunkHead + scene.binaryBytes());
        if (bytes > std::numeric_limits<uint32_t>::max()) {
            throw std::runtime_error(path + ": the surface is too large for a file of glTF");
        }

        Part part(path, Part::Kind::kFile, options.replace);
        TextFile file(part.path(), part.target(), options.look);
        std::string& text = file.text();
        text += "glTF";
        appendLittleEndian(text, uint32_t{2});
        appendLittleEndian(text, static_cast<uint32_t>(bytes));
        chunkHead(text, json.size(), "JSON");
        text += json;
        if (scene.binaryBytes() != 0) {
            using namespace std::string_view_literals;
            chunkHead(text, scene.binaryBytes(), "BIN\0"sv);
            append(file, positions.positions());
            append(file, positions.normals());
            append(file, mesh.codes);
            append(file, mesh.triangles);
            append(file, mesh.hull);
            append(file, mesh.breakLines);
        }
        file.close();
        part.putInPlace();
    }
};

}  // namespace

const MeshWriter& writer() {
    static const Writer writer;
    return writer;
}

}  // namespace formats::gltf
