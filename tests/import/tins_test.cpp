#include <array>
#include <cstdio>

#include "host/qxbase.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

constexpr char kEnd[] = "        -1         0         0         0         0         0         0\n";

std::string text(const char* format, double value) {
    char field[40];
    std::snprintf(field, sizeof field, format, value);
    return field;
}

std::string integers(const std::vector<int>& values) {
    std::string line;
    for (const int value : values) line += text("%10.0f", value);
    return line + '\n';
}

// Values on lines of their form, each chunk on a new line, without the closing line.
std::string runs(int count, int chunk, int perLine, const char* format) {
    std::string lines;
    for (int value = 0; value < count; ++value) {
        const int place = value % chunk % perLine;
        if (place == 0 && value != 0) lines += '\n';
        lines += text(format, value);
    }
    return count == 0 ? "" : lines + '\n';
}

constexpr char kNarrow[] = "%14.7E";
constexpr char kWide[] = "%21.14E";
constexpr char kInteger[] = "%10.0f";

const std::string kNarrowExtent =
    " 1.0000000E+00 2.0000000E+00 3.0000000E+00 4.0000000E+00**************\n"
    " 5.0000000E+00 6.0000000E+00-7.0000000E-01 8.0000000E+00 6.1100000E+00\n";
const std::string kWideExtent =
    " 1.00000000000000E-01 2.00000000000000E+00 3.00000000000000E+00\n"
    " 4.00000000000000E+00\n"
    " 5.00000000000000E+00 6.00000000000000E-01-7.0000000E-01 8.0000000E+00     70001\n";

// ENV in the short form, with the lines behind the count line that nobody reads.
std::string environment(int nodes, int triangles, int hull) {
    const std::string counts =
        text(kInteger, nodes) + text(kInteger, triangles) + text(kInteger, hull) + "0\n";
    return "EXP  0 X\nENV  2\n" + counts + "ignored\nignored\n" + kNarrowExtent + kEnd;
}

class Tins : public ImportTest {
  protected:
    json tin() const { return records("tin").at(0); }
    // One key of all objects of a class.
    std::vector<json> column(const std::string& className, const char* key) const {
        std::vector<json> values;
        for (const json& each : records(className)) values.push_back(each.at(key));
        return values;
    }
    std::string bytes(const std::string& member) const { return fileBytes(path("DS/" + member)); }
};

TEST_F(Tins, EnvironmentsAreReadInBothFormsOfCountsAndExtents) {
    struct Case {
        std::string counts;  // with the lines that are not read
        std::string extent;
        std::array<int, 7> integers;
        int version;
        double box1, sixth;
    };
    const Case cases[] = {
        {"         2         3         47\n?\n?\n",
         kNarrowExtent,
         {2, 3, 4, 0, 3, 2, 4},
         60101,
         1,
         6},
        {"         2         3         4\n?\n?\n?\n",
         kWideExtent,
         {2, 3, 4, 0, 3, 2, 4},
         70001,
         .1,
         .6},
        {"         2         3         47         5         0         6\n?\n?\n?\n",
         kNarrowExtent,
         {2, 3, 4, 7, 5, 2, 6},
         60101,
         1,
         6},
        {"         2         3         47         0\n?\n?\n?\n",
         kWideExtent,
         {2, 3, 4, 7, 3, 2, 4},
         70001,
         .1,
         .6},
    };
    int number = 0;
    for (const Case& each : cases) {
        SCOPED_TRACE(each.counts);
        given("EXP  0 X\nENV  2\n" + each.counts + each.extent + kEnd + "EOS\n");
        const std::string dataset = "DS" + std::to_string(++number);
        ASSERT_EQ(import(dataset), 1);
        EXPECT_EQ(messages(),
                  (std::vector<Message>{{QX_INFORM, " Creating TIN " + path(dataset)}}));
        const json tin = records("tin", dataset).at(0);
        const char* keys[] = {"nodeCount",           "triangleCount",   "hullCount",      "digit",
                              "secondTriangleCount", "secondNodeCount", "secondHullCount"};
        for (int key = 0; key < 7; ++key)
            EXPECT_EQ(tin[keys[key]], each.integers[key]) << keys[key];
        EXPECT_EQ(tin["version"], each.version);
        EXPECT_EQ(tin["box"], json::array({each.box1, 2.0, 3.0, 4.0}));
        EXPECT_EQ(tin["fifthReal"], 5.0);
        EXPECT_EQ(tin["sixthReal"], each.sixth);
        EXPECT_EQ(tin["zRange"], json::parse("[-0.699999988079071,8.0]"));
        EXPECT_EQ(fileBytes(path(dataset + "/tenv")).size(), 96U);
    }
    EXPECT_TRUE(std::filesystem::is_directory(path("info")));
}

TEST_F(Tins, ChunksBeginOnNewLines) {
    // 3750 coordinates end in the middle of a line of four, and 15000 words at the end of one.
    struct Case {
        const char* format;
        int perLine;
    };
    for (const Case& each : {Case{kNarrow, 4}, Case{kWide, 3}}) {
        given(environment(1876, 5001, 1) + "NXY  2\n" +
              runs(3752, 3750, each.perLine, each.format) + kEnd + "NOD  2\n" +
              runs(15003, 15000, 6, kInteger) + kEnd + "NID  2\n" + runs(1876, 15000, 6, kInteger) +
              kEnd + "EOS\n");
        std::filesystem::remove_all(path("DS"));
        ASSERT_EQ(import(), 1);
        EXPECT_TRUE(complaints().empty());
        const auto nodes = records("tinNode");
        ASSERT_EQ(nodes.size(), 1876U);
        for (int number = 0; number < 1876; ++number) {
            const json expected = {{"class", "tinNode"},
                                   {"number", number + 1},
                                   {"x", number * 2.0},
                                   {"y", number * 2.0 + 1},
                                   {"id", number}};
            ASSERT_EQ(nodes[static_cast<std::size_t>(number)], expected);
        }
        const auto triangles = column("tinTriangle", "nodes");
        ASSERT_EQ(triangles.size(), 5001U);
        EXPECT_EQ(triangles[4999], json::parse("[14997,14998,14999]"));
        EXPECT_EQ(triangles[5000], json::parse("[15000,15001,15002]"));
    }
}

TEST_F(Tins, HeightsBelowTheThresholdAreNoData) {
    given(environment(8, 0, 0) +
          "NZ   2\n 1.0000000E+02-3.0625410E+38-3.0625420E+38-3.4028235E+38\n"
          " 9.0000000E+39          -Inf           NaN-1.0000000E+02\n" +
          kEnd + "EOS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(column("tinNode", "z"),
              (std::vector<json>{100.0, static_cast<float>(-3.0625410E+38), nullptr, nullptr,
                                 "Infinity", nullptr, nullptr, -100.0}));
    const std::string noData = "\xff\x7f\xff\xff";
    EXPECT_EQ(bytes("tnz").substr(20, 8), noData + noData);
}

TEST_F(Tins, EdgesGetTheirFlagPatternsBack) {
    given(environment(0, 3, 2) +
          "EDG  2\n-999999999-999999998-999999997-500000001-500000000-499999999\n"
          "        -1         0 999999999**********\n" +
          kEnd + "HUL  2\n        -5         6**********\n" + kEnd + "EOS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(json(column("tinTriangle", "edges")),
              json::parse("[[-2147483648,-2147483647,-1573741820],"
                          "[-1073741824,-1073741823,-499999999],[-1,0,999999999]]"));
    EXPECT_EQ(column("tinHull", "value"), (std::vector<json>{-5, 6}));
}

TEST_F(Tins, SectionsWithoutValuesReadTheirClosingLineAlone) {
    // NXY reads one more, for its form.
    const std::string trap = "LOG  2 is read if the line before it was not the closing line\n";
    std::string lines = environment(0, 0, 0) + "NXY  2\n" + trap + trap;
    for (const char* code : {"NZ ", "NOD", "EDG", "HUL", "NID"}) {
        lines += std::string(code) + "  2\n" + trap;
    }
    given(lines + "EOS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_TRUE(complaints().empty());
    EXPECT_TRUE(records("tinNode").empty() && records("tinTriangle").empty());
    EXPECT_TRUE(records("tinHull").empty() && records("tinMask").empty());
}

TEST_F(Tins, MasksHold77BitsToALine) {
    struct Case {
        int bits;
        std::vector<std::string> lines;
        std::string expected;
    };
    const std::string full(77, '1');
    const std::string zeros(200, '0');
    const Case cases[] = {
        {0, {}, ""},
        {77, {full + "11"}, full},
        {78, {full, "1111"}, full + "1"},
        {160, {"1 2910", full}, "100010" + std::string(71, '0') + full},
        {3, {"101x"}, "101"},
    };
    for (const Case& each : cases) {
        std::string lines = environment(0, 0, 0) + "TMK  2\n" +
                            integers({each.bits, static_cast<int>(each.lines.size())});
        for (const std::string& line : each.lines) lines += line + '\n';
        given(lines + kEnd + "EOS\n");
        std::filesystem::remove_all(path("DS"));
        ASSERT_EQ(import(), 1) << each.bits;
        const std::string bits = records("tinMask").at(0)["bits"];
        EXPECT_EQ((bits + zeros).substr(0, 200), (each.expected + zeros).substr(0, 200));
    }
}

TEST_F(Tins, MembersOfTheOlderGenerationKeepTheirNames) {
    std::filesystem::create_directory(path("DS"));
    writeFile(path("DS/nxy"), std::string(100, 'x'));
    given(environment(1, 0, 1) + "NXY  2\n 1.0000000E+00 2.0000000E+00\n" + kEnd +
          "HUL  2\n         7\n" + kEnd + "EOS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(bytes("nxy").size(), 16U);
    EXPECT_TRUE(bytes("tnxy").empty());
    EXPECT_EQ(bytes("thul").size(), 4U);
    EXPECT_EQ(records("tinNode").at(0)["y"], 2.0);
}

TEST_F(Tins, FailuresAreToldAndKeepWhatCameBefore) {
    const std::string nodes = "NXY  2\n 1.0000000E+00 2.0000000E+00\n" + std::string(kEnd);
    const std::string start = "EXP  0 X\nENV  2\n";
    struct Case {
        const char* blocker;  // a directory that is in the way; a file if it ends in "!"
        std::string lines;
        int32_t result;
        std::vector<std::string> complaints;
    };
    const std::string ds = path("DS");
    const std::string negative = "Invalid TIN count (IMPENV)";
    const std::string notCreated = "Unable to create TIN.";
    const Case cases[] = {
        {"DS/tenv!", environment(1, 0, 0), 0, {notCreated}},
        {"DS/env!", environment(1, 0, 0), 0, {notCreated}},
        {"DS!", environment(1, 0, 0), 0, {"Unable to create directory " + ds, notCreated}},
        {"DS/tmsk", environment(1, 0, 0), 0, {"Cannot open Tin MSK file", notCreated}},
        {"DS/tedg", environment(1, 0, 0), 0, {"Can not initialize Tin Environment", notCreated}},
        {"info!", environment(1, 0, 0), 0, {notCreated}},
        {"DS/msk",
         environment(0, 0, 0) + "TMK  2\n" + integers({0, 0}) + kEnd + "EOS\n",
         0,
         {"Unable to write MSK structure (IMTMSK)."}},
        {"",
         environment(0, 0, 0) + "TMK  2\n" + integers({-5, 1}) + kEnd + "EOS\n",
         0,
         {"Invalid mask count (IMTMSK)"}},
        // The lines of a section without its file are passed over.
        {"DS/nxy", environment(1, 0, 1) + nodes + "HUL  2\n         7\n" + kEnd + "EOS\n", 1, {}},
        {"",
         "EXP  0 X\n" + nodes + "EOS\n",
         1,
         {"The TIN section has no ENV section before it (IMPNXY)."}},
        {"",
         "EXP  0 X\nCS7  2\nEOS\n" + environment(1, 0, 0).substr(9),
         0,
         {"Unable to restore ENV (impsub)."}},
        {"", start + "        -1         0         0\n", 0, {negative}},
        {"", start + "         1         0         00        -1\n", 0, {negative}},
        {"",
         environment(2147483647, 0, 0) + nodes,
         0,
         {"ERROR, next volume " + path("in.e01") + " does not exist."}},
        {"",
         environment(0, 2147483647, 0) + "EDG  2\n         1         x\n",
         0,
         {"Could not read \"         x\" in columns 11 to 20 of line 10 of " + path("in.e00")}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.blocker) + ":\n" + each.lines);
        std::filesystem::remove_all(ds);
        std::filesystem::remove_all(path("info"));
        std::string blocker = path(each.blocker);
        if (blocker.back() == '!') {
            blocker.pop_back();
            std::filesystem::create_directories(std::filesystem::path(blocker).parent_path());
            writeFile(blocker, "");
        } else {
            std::filesystem::create_directories(blocker);
        }
        given(each.lines);
        EXPECT_EQ(import(), each.result);
        EXPECT_EQ(complaints(), each.complaints);
    }
}

TEST_F(Tins, ChunksBeforeAFailureAreKept) {
    given(environment(3750, 0, 0) + "NXY  2\n" +
          runs(7500, 3750, 4, kNarrow).substr(0, 937 * 57 + 29) + "             x\n");
    ASSERT_EQ(import(), 0);
    EXPECT_EQ(records("tinNode").size(), 1875U);
    EXPECT_EQ(tin()["nodeCount"], 3750);
    // The next import finds nothing of it but the files.
    EXPECT_EQ(import("OTHER"), 0);
    EXPECT_EQ(records("tinNode", "OTHER"), records("tinNode"));
}

}  // namespace
}  // namespace intake::testing
