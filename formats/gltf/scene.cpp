#include "formats/gltf/scene.h"

#include "formats/geojson/json_text.h"
#include "formats/numbers.h"

namespace formats::gltf {

namespace {

using geojson::appendQuoted;

// The constants that the format gives these.
constexpr int kVertices = 34962;
constexpr int kIndexes = 34963;
constexpr int kFloat = 5126;
constexpr int kUnsignedShort = 5123;
constexpr int kUnsignedInt = 5125;
constexpr int kPoints = 0;
constexpr int kLines = 1;
constexpr int kTriangles = 4;

// Dull earth that is seen from both sides, and lines.
constexpr std::string_view kTerrain =
    R"({"name":"terrain","doubleSided":true,"pbrMetallicRoughness":)"
    R"({"baseColorFactor":[0.47,0.5,0.36,1],"metallicFactor":0,"roughnessFactor":1}})";
constexpr std::string_view kHull = R"({"name":"hull","pbrMetallicRoughness":)"
                                   R"({"baseColorFactor":[0.1,0.1,0.1,1],"metallicFactor":0}})";
constexpr std::string_view kBreakLines =
    R"({"name":"break lines","pbrMetallicRoughness":)"
    R"({"baseColorFactor":[0.6,0.05,0.1,1],"metallicFactor":0}})";

template <class Number, std::size_t count>
std::string list(const std::array<Number, count>& numbers) {
    std::string text = "[";
    for (const Number number : numbers) {
        if (text.size() > 1) text += ',';
        appendShortest(text, number);
    }
    return text += ']';
}

void member(std::string& text, std::string_view name, std::string_view value) {
    if (text.back() != '{') text += ',';
    appendQuoted(text, name);
    text += ':';
    appendQuoted(text, value);
}

std::string typed(int type, std::string_view shape) {
    return "\"componentType\":" + std::to_string(type) + ",\"type\":\"" + std::string(shape) + '"';
}

}  // namespace

void Scene::addAccessor(std::size_t records, std::size_t components, std::string_view rest,
                        bool isIndex) {
    const uint64_t bytes = uint64_t{records} * components * 4;
    const std::string comma = views_.empty() ? "" : ",";
    const auto number = std::count(views_.begin(), views_.end(), '{');
    views_ += comma + "{\"buffer\":0,\"byteOffset\":" + std::to_string(bytes_) +
              ",\"byteLength\":" + std::to_string(bytes) +
              ",\"target\":" + std::to_string(isIndex ? kIndexes : kVertices) + '}';
    accessors_ += comma + "{\"bufferView\":" + std::to_string(number) +
                  ",\"count\":" + std::to_string(isIndex ? records * components : records) + ',';
    accessors_ += rest;
    accessors_ += '}';
    bytes_ += bytes;
}

void Scene::addPrimitive(int mode, std::string_view material, std::string_view attributes,
                         int indices) {
    if (!primitives_.empty()) {
        primitives_ += ',';
        materials_ += ',';
    }
    primitives_ += "{\"mode\":" + std::to_string(mode) +
                   ",\"material\":" + std::to_string(primitiveCount_++) + ",\"attributes\":{";
    primitives_ += attributes;
    primitives_ += '}';
    if (indices >= 0) primitives_ += ",\"indices\":" + std::to_string(indices);
    primitives_ += '}';
    materials_ += material;
}

void Scene::describeNode(const Mesh& mesh, const Positions& positions) {
    json_ += "\"nodes\":[{\"name\":";
    appendQuoted(json_, mesh.name);
    if (!primitives_.empty()) json_ += ",\"mesh\":0";
    // A quarter of a turn about x: east stays, north goes away from the onlooker, up goes up.
    json_ += R"(,"rotation":[-0.7071067811865476,0,0,0.7071067811865476],"scale":)" +
             list(mesh.metres) + ",\"extras\":{\"origin\":" + list(positions.origin());
    member(json_, "system", mesh.system.description);
    member(json_, "units", mesh.system.unitName);
    member(json_, "heightUnits", mesh.system.heightUnits);
    if (mesh.system.epsg != 0) json_ += ",\"epsg\":" + std::to_string(mesh.system.epsg);
    if (!mesh.system.wkt2.empty()) member(json_, "wkt", mesh.system.wkt2);
    json_ += ",\"texts\":{";
    for (const Mesh::Note& note : mesh.notes) member(json_, note.name, note.content);
    json_ += "}}}]";
}

Scene::Scene(const Mesh& mesh, const Positions& positions) {
    if (!mesh.vertices.empty()) {
        addAccessor(mesh.vertices.size(), 3,
                    typed(kFloat, "VEC3") + ",\"min\":" + list(positions.least()) +
                        ",\"max\":" + list(positions.greatest()),
                    false);
        int accessors = 1;
        std::string attributes = "\"POSITION\":0";
        if (!positions.normals().empty()) {
            addAccessor(positions.normals().size(), 3, typed(kFloat, "VEC3"), false);
            attributes += ",\"NORMAL\":" + std::to_string(accessors++);
        }
        if (!mesh.codes.empty()) {
            addAccessor(mesh.codes.size(), 1, typed(kUnsignedShort, "VEC2"), false);
            attributes += ",\"_CODE\":" + std::to_string(accessors++);
        }
        const std::string index = typed(kUnsignedInt, "SCALAR");
        if (mesh.triangles.empty()) addPrimitive(kPoints, kTerrain, attributes, -1);
        if (!mesh.triangles.empty()) {
            addAccessor(mesh.triangles.size(), 3, index, true);
            addPrimitive(kTriangles, kTerrain, attributes, accessors++);
        }
        const auto addLines = [&](const std::vector<Mesh::Edge>& edges, std::string_view material) {
            if (edges.empty()) return;
            addAccessor(edges.size(), 2, index, true);
            addPrimitive(kLines, material, "\"POSITION\":0", accessors++);
        };
        addLines(mesh.hull, kHull);
        addLines(mesh.breakLines, kBreakLines);
    }
    json_ =
        "{\"asset\":{\"version\":\"2.0\",\"generator\":\"intake\"},\"scene\":0,"
        "\"scenes\":[{\"nodes\":[0]}],";
    describeNode(mesh, positions);
    if (!primitives_.empty()) {
        json_ += ",\"meshes\":[{\"name\":";
        appendQuoted(json_, mesh.name);
        json_ += ",\"primitives\":[" + primitives_ + "]}],\"materials\":[" + materials_ +
                 "],\"accessors\":[" + accessors_ + "],\"bufferViews\":[" + views_ +
                 "],\"buffers\":[{\"byteLength\":" + std::to_string(bytes_) + "}]";
    }
    json_ += '}';
}

}  // namespace formats::gltf
