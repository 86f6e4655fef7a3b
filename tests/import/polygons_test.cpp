#include "tests/support/columns.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Lines = std::vector<std::string>;

constexpr char kStoredBox[] = "[1.5,2.5,3.5,4.5]";

// PAL, PFF and RPL: a box and what stands around it.
class Polygons : public ImportTest {
  protected:
    static std::string header(const char* code, int precision) {
        return std::string(code) + "  " + std::to_string(precision);
    }
    static void addHead(Lines& lines, int precision, int count) {
        if (precision == 2) {
            lines.push_back(integers({count}) + reals(2, {1.5, 2.5, 3.5, 4.5}));
        } else {
            lines.insert(lines.end(),
                         {integers({count}) + reals(3, {1.5, 2.5}), reals(3, {3.5, 4.5})});
        }
    }
    // A polygon without arcs, one of three, and the end.
    static void addPolygons(Lines& lines, int precision) {
        addHead(lines, precision, 0);
        lines.emplace_back("this line belongs to the polygon without arcs");
        addHead(lines, precision, 3);
        lines.insert(lines.end(), {integers({1, 1, 2, -2, 2, 3}),
                                   integers({3, 3, 4}) + " what stands here is not read"});
        addHead(lines, precision, 1);
        lines.push_back(integers({0, 0, 0}));
        addEnd(lines, precision);
    }
    static void addEnd(Lines& lines, int precision) {
        lines.push_back(integers({-1, 0, 0, 0, 0, 0, 0}));
        if (precision != 2) lines.push_back(reals(3, {0, 0}));
    }
    static json arcs(const std::vector<json>& objects) {
        json all;
        for (const json& each : objects) all.push_back(each["arcs"]);
        return all;
    }
    const json kArcs = json::parse("[[],[[1,1,2],[-2,2,3],[3,3,4]],[[0,0,0]]]");
};

TEST_F(Polygons, AreReadWithTheirArcsInBothForms) {
    for (const int precision : {2, 3}) {
        Lines lines = {"EXP  0 X", header("PAL", precision)};
        addPolygons(lines, precision);
        // A line that looks like nothing, so that one too many or too few at the end would show.
        lines.insert(lines.end(), {"PAL  2"});
        addEnd(lines, 2);
        lines.emplace_back("EOS");
        given(lines);
        const std::string dataset = "DS" + std::to_string(precision);
        ASSERT_EQ(import(dataset), 1);
        EXPECT_TRUE(complaints().empty());
        const auto polygons = records("polygon", dataset);
        ASSERT_EQ(arcs(polygons), kArcs);
        EXPECT_EQ(polygons[1]["box"], json::parse(kStoredBox));
        EXPECT_EQ(polygons[1]["arcCount"], 3);
        EXPECT_EQ(polygons[1]["number"], 2);
        EXPECT_EQ(polygons[1]["source"], "PAL");
        EXPECT_EQ(records("dataset", dataset)[0]["counts"], (json{{"polygon/PAL", 3}}));
    }
}

TEST_F(Polygons, HaveAnyNumberOfArcsAndNoneOfTheOneBefore) {
    constexpr int kMany = 10001;
    Lines lines = {"EXP  0 X", "PAL  2"};
    addHead(lines, 2, kMany);
    for (int arc = 1; arc <= kMany; arc += 2) {
        lines.push_back(integers({arc, 0, 1, arc + 1, 0, 1}));
    }
    addPolygons(lines, 2);
    // A second section goes on behind the first.
    lines.emplace_back("PAL  2");
    addPolygons(lines, 2);
    lines.emplace_back("EOS");
    given(lines);
    ASSERT_EQ(import(), 1);
    const auto polygons = records("polygon");
    ASSERT_EQ(polygons.size(), 7U);
    ASSERT_EQ(polygons[0]["arcs"].size(), static_cast<std::size_t>(kMany));
    EXPECT_EQ(polygons[0]["arcs"][kMany - 1], json({kMany, 0, 1}));
    EXPECT_EQ(arcs({polygons.end() - 3, polygons.end()}), kArcs);
    EXPECT_EQ(polygons.back()["number"], 7);
}

TEST_F(Polygons, BoxesEndDifferentlyInTheTwoForms) {
    Lines lines = {"EXP  0 X", "PFF  2"};
    addHead(lines, 2, 5);
    lines.insert(lines.end(), {"no point in this line", integers({-1, 0, 0, 0, 0, 0, 1}), ""});
    addHead(lines, 2, -1);
    lines.insert(lines.end(), {integers({-1, 0, 0, 0, 0, 0, 0}), "EOS"});
    given(lines);
    ASSERT_EQ(import("SINGLE"), 1);
    const auto single = records("polygon", "SINGLE");
    ASSERT_EQ(single.size(), 2U);
    for (int index = 0; index < 2; ++index) {
        EXPECT_EQ(single[index], (json{{"class", "polygon"},
                                       {"number", index + 1},
                                       {"box", json::parse(kStoredBox)},
                                       {"arcCount", 0},
                                       {"arcs", json::array()},
                                       {"source", "PFF"}}));
    }

    lines = {"EXP  0 X", "PFF  3"};
    addHead(lines, 3, 5);
    addHead(lines, 3, -2);
    // One line ends it: the next is a header.
    lines.insert(lines.end(), {integers({-1, 0, 0, 0, 0, 0, 0}), "PFF  3", integers({-1}), "EOS"});
    given(lines);
    ASSERT_EQ(import("DOUBLE"), 1);
    const auto wide = records("polygon", "DOUBLE");
    ASSERT_EQ(wide.size(), 2U);
    EXPECT_EQ(wide[0]["arcCount"], 5);
    EXPECT_EQ(wide[1]["arcCount"], -2);
    EXPECT_TRUE(wide[0]["arcs"].empty());
}

TEST_F(Polygons, OfRegionsGoByTheirSubclass) {
    // Names are data: none leaves the coverage or meets another's file, and each comes back.
    const Lines names = {"ZONES", "zones", "../../X", "A/B", "", ".", "TAB\tTAB", "thirteen cols"};
    for (const int precision : {2, 3}) {
        Lines lines = {"EXP  0 X", header("RXP", precision)};
        for (const std::string& name : names) {
            lines.insert(lines.end(),
                         {name, integers({7, 8}), integers({9, -1}), integers({-1, 0})});
        }
        lines.insert(lines.end(), {"NONE         and what else stands in the line",
                                   integers({-1, 0}), "JABBERWOCKY  ", header("RPL", precision)});
        // In another order, which is then that of the regions.
        for (auto name = names.rbegin(); name != names.rend(); ++name) {
            lines.push_back(*name);
            addPolygons(lines, precision);
        }
        lines.insert(lines.end(), {"JABBERWOCKY", header("RPL", precision), "ZONES"});
        addPolygons(lines, precision);
        lines.insert(lines.end(), {"JABBERWOCKY", header("RXP", precision), "JABBERWOCKY", "EOS"});
        given(lines);
        const std::string dataset = "DS" + std::to_string(precision);
        ASSERT_EQ(import(dataset), 1);
        EXPECT_TRUE(complaints().empty());

        const auto pairs = records("regionPair", dataset);
        ASSERT_EQ(pairs.size(), names.size() * 2);
        const auto regions = records("region", dataset);
        ASSERT_EQ(regions.size(), names.size() * 3 + 3);
        for (std::size_t index = 0; index < names.size(); ++index) {
            EXPECT_EQ(pairs[index * 2 + 1], (json{{"class", "regionPair"},
                                                  {"subclass", names[index]},
                                                  {"number", 2},
                                                  {"pair", {9, -1}}}));
            const auto first = regions.begin() + static_cast<std::ptrdiff_t>(index * 3);
            EXPECT_EQ((*first)["subclass"], names[names.size() - 1 - index]);
            EXPECT_EQ(arcs({first, first + 3}), kArcs);
        }
        EXPECT_EQ(regions.back()["number"], 6);
        EXPECT_EQ(regions.back()["box"], json::parse(kStoredBox));
        EXPECT_FALSE(regions.back().contains("arcCount"));
        const json counts = records("dataset", dataset)[0]["counts"];
        EXPECT_EQ(counts["regionPair/NONE"], 0);
        EXPECT_EQ(counts["region/zones"], 3);
        EXPECT_FALSE(counts.contains("region/NONE"));
    }
    for (const auto& entry : std::filesystem::directory_iterator(path("."))) {
        const std::string name = entry.path().filename();
        EXPECT_TRUE(name == "DS2" || name == "DS3" || name == "info" || name == "in.e00") << name;
    }
}

TEST_F(Polygons, NegativeArcCountsEndTheImport) {
    const std::pair<Lines, std::string> cases[] = {
        {{"PAL  2"}, "Invalid arc count (IMPPAL)"},
        {{"RPL  2", "ZONES"}, "Invalid arc count (IMPRPL)"},
    };
    for (const auto& [opening, message] : cases) {
        Lines lines = {"EXP  0 X"};
        lines.insert(lines.end(), opening.begin(), opening.end());
        addHead(lines, 2, 1);
        lines.push_back(integers({4, 5, 6}));
        addHead(lines, 2, -2);
        given(lines);
        const std::string dataset = opening[0].substr(0, 3);
        EXPECT_EQ(import(dataset), 0);
        EXPECT_EQ(complaints(), Lines{message});
        const auto kept = records(dataset == "PAL" ? "polygon" : "region", dataset);
        ASSERT_EQ(kept.size(), 1U);
        EXPECT_EQ(kept[0]["arcs"], json::parse("[[4,5,6]]"));
    }
}

}  // namespace
}  // namespace intake::testing
