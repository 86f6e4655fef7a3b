#include "host/qxbase.h"
#include "tests/support/columns.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Lines = std::vector<std::string>;

// LAB and CNT: the points of a coverage.
class Points : public ImportTest {
  protected:
    static void addLabel(Lines& lines, int precision, const std::string& ids, double x, double y) {
        lines.push_back(ids + reals(precision, {x, y}));
        if (precision == 2) {
            lines.push_back(reals(precision, {4.5, 3.5, 2.5, 1.5}));
        } else {
            lines.insert(lines.end(), {reals(precision, {4.5, 3.5}), reals(precision, {2.5, 1.5})});
        }
    }
    static std::string section(const char* code, int precision) {
        return std::string(code) + "  " + std::to_string(precision);
    }
};

TEST_F(Points, LabelsAreReadInEveryPrecision) {
    for (const int precision : {1, 2, 3}) {
        Lines lines = {"EXP  0 X", section("LAB", precision)};
        addLabel(lines, precision, integers({12, 3}), 0.1, -2);
        // Not the end: that takes the id, the polygon and both coordinates.
        addLabel(lines, precision, integers({-1, 1}), 0, 0);
        addLabel(lines, precision, integers({-1, 0}), 0, 1e-300);
        addLabel(lines, precision, integers({-1, 0}), 1, 0);
        lines.insert(lines.end(), {integers({-1, 0}) + reals(precision, {-0.0, 0}), "EOS"});
        given(lines);
        const std::string dataset = "DS" + std::to_string(precision);
        ASSERT_EQ(import(dataset), 1);
        const auto labels = records("label", dataset);
        ASSERT_EQ(labels.size(), 4U);
        const double x = precision == 3 ? 0.1 : double{0.1F};
        EXPECT_EQ(labels[0], (json{{"class", "label"},
                                   {"number", 1},
                                   {"userId", 12},
                                   {"polygon", 3},
                                   {"x", x},
                                   {"y", -2.0},
                                   {"box", {4.5, 3.5, 2.5, 1.5}}}));
        EXPECT_EQ(labels[3]["x"], 1.0);
        EXPECT_EQ(records("dataset", dataset)[0]["counts"], (json{{"label", 4}}));
    }
}

TEST_F(Points, OverflowedUserIdsOfLabelsAreZeroInSinglePrecisionOnly) {
    const std::string stars = "**********" + integers({7});
    Lines lines = {"EXP  0 X"};
    for (int section = 0; section < 2; ++section) {
        lines.emplace_back("LAB  2");
        addLabel(lines, 2, stars, 1, 2);
        addLabel(lines, 2, stars, 3, 4);
        lines.push_back(integers({-1, 0}) + reals(2, {0, 0}));
    }
    lines.emplace_back("EOS");
    given(lines);
    ASSERT_EQ(import(), 1);
    const Message told[] = {
        {QX_INFORM, "Label file, Unavoidable loss of data for User-ID, set to 0"},
        {QX_WARN,
         "Use IDEDIT command with POINT or POLY option as appropriate to recover lost data."}};
    EXPECT_EQ(
        messages(),
        (std::vector<Message>{
            {QX_INFORM, " Creating Coverage " + path("DS")}, told[0], told[1], told[0], told[1]}));
    const auto labels = records("label");
    ASSERT_EQ(labels.size(), 4U);
    EXPECT_EQ(labels[3]["number"], 4);
    EXPECT_EQ(labels[3]["userId"], 0);
    EXPECT_EQ(labels[3]["polygon"], 7);

    given(Lines{"EXP  0 X", "LAB  3", stars + reals(3, {1, 2})});
    EXPECT_EQ(import("WIDE"), 0);
    EXPECT_EQ(complaints(), Lines{"Could not read \"**********\" in columns 1 to 10 of line 3 of " +
                                  path("in.e00")});
}

TEST_F(Points, CentroidsHoldAnyNumberOfLabels) {
    for (const int precision : {2, 3}) {
        Lines lines = {"EXP  0 X", section("CNT", precision)};
        const std::string place = reals(precision, {1.5, 2.5});
        lines.insert(
            lines.end(),
            {integers({0}) + place, integers({9}) + place, integers({1, 2, 3, 4, 5, 6, 7, 8}),
             integers({9}) + " what stands here is not read", integers({8}) + place,
             integers({8, 7, 6, 5, 4, 3, 2, 1}), integers({1000}) + place});
        lines.insert(lines.end(), 125, integers({1, 2, 3, 4, 5, 6, 7, 8}));
        lines.insert(lines.end(), {integers({-1}) + reals(precision, {0, 0}), "EOS"});
        given(lines);
        const std::string dataset = "DS" + std::to_string(precision);
        ASSERT_EQ(import(dataset), 1);
        const auto centroids = records("centroid", dataset);
        ASSERT_EQ(centroids.size(), 4U);
        EXPECT_EQ(centroids[0], (json{{"class", "centroid"},
                                      {"number", 1},
                                      {"x", 1.5},
                                      {"y", 2.5},
                                      {"labels", json::array()}}));
        EXPECT_EQ(centroids[1]["labels"], json({1, 2, 3, 4, 5, 6, 7, 8, 9}));
        EXPECT_EQ(centroids[2]["labels"], json({8, 7, 6, 5, 4, 3, 2, 1}));
        EXPECT_EQ(centroids[3]["labels"].size(), 1000U);
        EXPECT_TRUE(complaints().empty());
    }
}

TEST_F(Points, OverflowedLabelNumbersAreLookedForInTheFirstColumnsOfALine) {
    const std::string stars = "**********";
    const Lines centroid = {integers({10}) + reals(2, {1, 2}),
                            stars + integers({2, 3, 4, 5, 6, 7, 8}), stars + integers({9})};
    Lines lines = {"EXP  0 X"};
    for (int section = 0; section < 2; ++section) {
        lines.emplace_back("CNT  2");
        lines.insert(lines.end(), centroid.begin(), centroid.end());
        lines.push_back(integers({-1}));
    }
    lines.emplace_back("EOS");
    given(lines);
    ASSERT_EQ(import(), 1);
    const std::string told = "Centroid file, Unavoidable loss of data for LABEL ID, set to 0";
    EXPECT_EQ(complaints(), (Lines{told, told}));
    EXPECT_EQ(records("centroid")[1]["labels"], json({0, 2, 3, 4, 5, 6, 7, 8, 0, 9}));

    const std::pair<Lines, std::string> failures[] = {
        {{integers({2}) + reals(2, {1, 2}), integers({1}) + stars},
         "Could not read \"**********\" in columns 11 to 20 of line 4 of " + path("in.e00")},
        {{integers({-2}) + reals(2, {1, 2})}, "Invalid label count (IMPCNT)"},
        {{stars + reals(2, {1, 2})},
         "Could not read \"**********\" in columns 1 to 10 of line 3 of " + path("in.e00")},
        // A count alone takes no memory.
        {{integers({2147483647}) + reals(2, {1, 2}), integers({1, 2, 3, 4, 5, 6, 7, 8})},
         "ERROR, next volume " + path("in.e01") + " does not exist."},
    };
    int number = 0;
    for (const auto& [body, message] : failures) {
        lines = {"EXP  0 X", "CNT  2"};
        lines.insert(lines.end(), body.begin(), body.end());
        given(lines);
        EXPECT_EQ(import("BAD" + std::to_string(++number)), 0);
        EXPECT_EQ(complaints(), Lines{message});
    }
}

}  // namespace
}  // namespace intake::testing
