// Surfaces in formats of surfaces.
#include "tests/support/columns.h"
#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

const std::string kEnd = integers({-1, 0, 0, 0, 0, 0, 0}) + '\n';

// Six nodes, of which the fifth has no height:
//     4 --- 3 --- 6        triangles 1 2 3, 1 4 3 (clockwise), 2 6 3, 3 6 5, and 3 6 4,
//     |  /  |  /           masked. The side of 1 and 3 is marked, and so is that of 1 and 2, which
//     1 --- 2    5         lies outside.
const std::string kSurface =
    "EXP  0 X\nENV  2\n" + integers({6, 5, 4}) + "0\n?\n?\n" + reals(2, {0, 0, 2, 1, 0}) + '\n' +
    reals(2, {0, 0, 1, 4, 6}) + '\n' + kEnd + "TMK  2\n" + integers({5, 1}) + "\n11110\n" + kEnd +
    "NXY  2\n" + reals(2, {0, 0, 1, 0}) + '\n' + reals(2, {1, 1, 0, 1}) + '\n' +
    reals(2, {2, 0, 2, 1}) + '\n' + kEnd + "NZ   2\n" + reals(2, {1, 2, 3, 4}) + '\n' +
    reals(2, {-3.4028235e38, 6}) + '\n' + kEnd + "NOD  2\n" + integers({1, 2, 3, 1, 4, 3}) + '\n' +
    integers({2, 6, 3, 3, 6, 5}) + '\n' + integers({3, 6, 4}) + '\n' + kEnd + "EDG  2\n" +
    integers({-999999999, 3, 2, 0, 0, -500000002}) + '\n' + integers({0, 4, 1, 3, 0, 0}) + '\n' +
    integers({0, 0, 0}) + '\n' + kEnd + "HUL  2\n" + integers({1, 2, 6, 4}) + '\n' + kEnd +
    "NID  2\n" + integers({11, 12, 13, 14, 15, 16}) + '\n' + kEnd +
    "PRJ  2\nProjection    UTM\n~\nZunits        FEET\n~\nEOP\nEOS\n";

class SurfaceExport : public ProgramTest {
  protected:
    void SetUp() override {
        ProgramTest::SetUp();
        given(kSurface);
        ASSERT_EQ(import(), 1);
    }
    std::string body(std::vector<std::string> options) {
        std::vector<std::string> words = {"export", "@DS", "@o.ply", "--ascii", "--force"};
        words.insert(words.end(), options.begin(), options.end());
        last_ = run(words);
        const std::string bytes = fileBytes(path("o.ply"));
        return bytes.substr(bytes.find("end_header\n") + 11);
    }
    Outcome last_{};
};

TEST_F(SurfaceExport, HasWhatIsShownAndTellsWhatIsNot) {
    EXPECT_EQ(body({"--json"}),
              "0 0 1 11\n1 0 2 12\n1 1 3 13\n0 1 4 14\n2 1 6 16\n"
              "3 0 1 2\n3 0 2 3\n3 1 4 2\n"
              "0 1 0\n1 4 0\n4 3 0\n3 0 0\n0 2 1\n");
    EXPECT_EQ(last_.status, 3);
    const json report = last_.object();
    std::vector<std::string> layers;
    for (const json& each : report["layers"]) {
        layers.push_back(each["name"].get<std::string>() + ' ' + each["features"].dump() + ' ' +
                         each["leftOut"].dump());
    }
    EXPECT_EQ(layers, (std::vector<std::string>{"nodes 5 1", "triangles 3 2", "hull 4 0",
                                                "break_lines 1 0"}));
    EXPECT_EQ(report["losses"][0]["examples"], "4");
    EXPECT_NE(fileBytes(path("o.ply")).find("comment heights: Zunits FEET\n"), std::string::npos);
}

TEST_F(SurfaceExport, WhatLiesBehindTheMaskIsHidden) {
    const struct {
        std::string flags;
        int shown;
    } cases[] = {{"", 40},
                 {std::string(40, '0'), 40},
                 {"01" + std::string(38, '0'), 1},
                 {std::string(39, '0') + '1', 1}};
    for (const auto& each : cases) {
        std::string text =
            "EXP  0 X\nENV  2\n" + integers({3, 40, 0}) + "0\n?\n?\n" + reals(2, {0, 0, 2, 1, 0}) +
            '\n' + reals(2, {0, 0, 1, 4, 6}) + '\n' + kEnd + "TMK  2\n" +
            integers({static_cast<int>(each.flags.size()), each.flags.empty() ? 0 : 1}) + '\n' +
            (each.flags.empty() ? "" : each.flags + '\n') + kEnd + "NXY  2\n" +
            reals(2, {0, 0, 1, 0}) + '\n' + reals(2, {1, 1}) + '\n' + kEnd + "NZ   2\n" +
            reals(2, {1, 2, 3}) + '\n' + kEnd + "NOD  2\n";
        for (int line = 0; line < 20; ++line) text += integers({1, 2, 3, 1, 2, 3}) + '\n';
        std::filesystem::remove_all(path("DS"));
        std::filesystem::remove_all(path("info"));
        given(text + kEnd + "EOS\n");
        ASSERT_EQ(import(), 1);
        EXPECT_EQ(std::ranges::count(body({"--quiet"}), '\n'), 3 + each.shown) << each.flags;
        // An area and its outline.
        EXPECT_EQ(run({"draw", "@DS", "@o.svg"}).status, 0);
        std::size_t paths = 0;
        const std::string svg = fileBytes(path("o.svg"));
        for (std::size_t at = 0; (at = svg.find("<path", at)) != svg.npos; ++at) ++paths;
        EXPECT_EQ(paths, 2U * static_cast<std::size_t>(each.shown)) << each.flags;
    }
}

TEST_F(SurfaceExport, LayersAndARectangleChoose) {
    EXPECT_EQ(body({"--layer", "break_lines"}), "0 0 1 11\n1 1 3 13\n0 1 1\n");
    EXPECT_EQ(body({"--layer", "triangles", "--where-within", "1.5,0.9,9,9"}),
              "1 0 2 12\n1 1 3 13\n2 1 6 16\n3 0 2 1\n");
    EXPECT_EQ(body({"--layer", "nodes", "--where-within", "5,5,9,9"}), "");
    EXPECT_EQ(run({"export", "@DS", "@o.glb", "--layer", "ways"}).status, 1);
}

TEST_F(SurfaceExport, OnlySurfacesAreTaken) {
    given("EXP  0 X\nPLT  2\nTitle\n 5 0.00000E+00 0.00000E+00\nEOP\nEOS\n");
    ASSERT_EQ(import("PLOT"), 1);
    const Outcome outcome = run({"export", "@PLOT", "@o.ply"});
    EXPECT_EQ(outcome.status, 1);
    given("EXP  0 X\nARC  2\n" + kEnd + "EOS\n");
    ASSERT_EQ(import("COVER"), 1);
    const Outcome cover = run({"export", "@COVER", "@o.glb"});
    EXPECT_EQ(cover.status, 1);
    EXPECT_NE(cover.errors.find("a Coverage is no surface"), std::string::npos) << cover.errors;
}

}  // namespace
}  // namespace intake::testing
