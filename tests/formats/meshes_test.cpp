#include <bit>
#include <cmath>
#include <cstring>
#include <nlohmann/json.hpp>

#include "formats/gltf/gltf.h"
#include "formats/ply/ply.h"
#include "tests/formats/formats_test.h"

namespace formats::testing {

namespace {

using intake::testing::fileBytes;
using nlohmann::json;

// A roof far from the origin: two triangles that meet in a break line.
Mesh roof() {
    Mesh mesh;
    mesh.name = "roof";
    mesh.vertices = {
        {500000, 4e6, 10}, {500004, 4e6, 10}, {500004, 4000002, 10.1}, {500000, 4000002, 13}};
    mesh.codes = {7, -1, 1 << 20, 0};
    mesh.triangles = {{0, 1, 2}, {0, 2, 3}};
    mesh.hull = {{0, 1}, {1, 2}};
    mesh.breakLines = {{0, 2}};
    mesh.system.description = "here";
    mesh.system.heightUnits = "FEET";
    mesh.metres = {1, 1, 0.3048};
    mesh.notes = {{"log", "one\ttwo\n\nthree\n"}};
    return mesh;
}

template <class Number>
std::vector<Number> numbersAt(const std::string& bytes, std::size_t at, std::size_t count) {
    static_assert(std::endian::native == std::endian::little, "the test reads bytes as they are");
    std::vector<Number> numbers(count);
    EXPECT_LE(at + count * sizeof(Number), bytes.size());
    std::memcpy(numbers.data(), bytes.data() + at, count * sizeof(Number));
    return numbers;
}

const std::string kHead =
    "comment surface: roof\ncomment system: here\ncomment heights: Zunits FEET\n"
    "comment log: one two\ncomment log: \ncomment log: three\n"
    "element vertex 4\nproperty double x\nproperty double y\nproperty double z\n"
    "property int code\nelement face 2\nproperty list uchar int vertex_indices\n"
    "element edge 3\nproperty int vertex1\nproperty int vertex2\nproperty uchar break_line\n"
    "end_header\n";

class Meshes : public FormatsTest {};

}  // namespace

TEST_F(Meshes, PlyHasTheSameNumbersAsTextAndInBinary) {
    Options options;
    options.ascii = true;
    ply::writer().write(path("text.ply"), roof(), options);
    EXPECT_EQ(fileBytes(path("text.ply")),
              "ply\nformat ascii 1.0\n" + kHead +
                  "5e+05 4e+06 10 7\n500004 4e+06 10 -1\n500004 4000002 10.1 1048576\n"
                  "5e+05 4000002 13 0\n3 0 1 2\n3 0 2 3\n0 1 0\n1 2 0\n0 2 1\n");
    ply::writer().write(path("out.ply"), roof(), {});
    const std::string bytes = fileBytes(path("out.ply"));
    const std::string head = "ply\nformat binary_little_endian 1.0\n" + kHead;
    ASSERT_EQ(bytes.size(), head.size() + 4 * 28 + 2 * 13 + 3 * 9);
    EXPECT_TRUE(bytes.starts_with(head));
    EXPECT_EQ(numbersAt<double>(bytes, head.size() + 56, 3),
              (std::vector<double>{500004, 4000002, 10.1}));
    EXPECT_EQ(numbersAt<int32_t>(bytes, head.size() + 80, 1), std::vector<int32_t>{1 << 20});
    EXPECT_EQ(bytes[head.size() + 112], 3);
    EXPECT_EQ(numbersAt<int32_t>(bytes, head.size() + 113, 3), (std::vector<int32_t>{0, 1, 2}));
    EXPECT_EQ(bytes.back(), 1);
}

TEST_F(Meshes, GlbIsAboutALocalOrigin) {
    gltf::writer().write(path("out.glb"), roof(), {});
    const std::string bytes = fileBytes(path("out.glb"));
    EXPECT_EQ(bytes.substr(0, 4), "glTF");
    const auto head = numbersAt<uint32_t>(bytes, 4, 3);
    EXPECT_EQ(head[0], 2U);
    EXPECT_EQ(head[1], bytes.size());
    const json scene = json::parse(bytes.substr(20, head[2]));
    const std::size_t binary = 28 + head[2];
    EXPECT_EQ(numbersAt<uint32_t>(bytes, binary - 8, 1)[0], bytes.size() - binary);
    const json& extras = scene["nodes"][0]["extras"];
    EXPECT_EQ(extras["origin"], json({500002.0, 4000001.0, 10.0}));
    EXPECT_EQ(extras["heightUnits"], "FEET");
    EXPECT_EQ(extras["texts"]["log"], "one\ttwo\n\nthree\n");
    EXPECT_EQ(scene["nodes"][0]["scale"], json({1.0, 1.0, 0.3048}));
    EXPECT_EQ(scene["accessors"][0]["min"], json({-2.0, -1.0, 0.0}));
    const auto part = [&](std::size_t accessor) {
        const json& view = scene["bufferViews"][accessor];
        return binary + view["byteOffset"].get<std::size_t>();
    };
    EXPECT_EQ(numbersAt<float>(bytes, part(0) + 24, 3), (std::vector<float>{2, 1, 0.1F}));
    for (int vertex = 0; vertex < 4; ++vertex) {
        const auto normal = numbersAt<float>(bytes, part(1) + std::size_t(vertex) * 12, 3);
        EXPECT_NEAR(std::hypot(normal[0], normal[1], normal[2]), 1, 1e-6);
        EXPECT_GT(normal[2], 0);
    }
    EXPECT_EQ(numbersAt<uint16_t>(bytes, part(2), 8),
              (std::vector<uint16_t>{7, 0, 65535, 65535, 0, 16, 0, 0}));
    EXPECT_EQ(numbersAt<uint32_t>(bytes, part(3), 6), (std::vector<uint32_t>{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(numbersAt<uint32_t>(bytes, part(5), 2), (std::vector<uint32_t>{0, 2}));
}

TEST_F(Meshes, WhatCannotBeWrittenIsToldAndLeavesNothing) {
    Mesh far = roof();
    far.vertices[0][0] = -1e300;
    EXPECT_NE(complaint([&] { gltf::writer().write(path("o.glb"), far, {}); }).find("too far"),
              std::string::npos);
    intake::testing::writeFile(path("there.ply"), "mine");
    EXPECT_NE(complaint([&] { ply::writer().write(path("there.ply"), far, {}); }), "nothing");
    EXPECT_EQ(fileBytes(path("there.ply")), "mine");
    EXPECT_EQ(files(), std::vector<std::string>{"there.ply"});
    Options options;
    options.replace = true;
    gltf::writer().write(path("there.ply"), {}, options);
    EXPECT_TRUE(fileBytes(path("there.ply")).starts_with("glTF"));
}

}  // namespace formats::testing
