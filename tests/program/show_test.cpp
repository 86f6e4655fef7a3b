#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

using Show = ProgramTest;

TEST_F(Show, ACoverageIsTextOrJson) {
    given(
        "EXP  0 X\nARC  3\n"
        "         1        12         1         2         3         4         2\n"
        " 1.00000000000000E-01 2.00000000000000E+00\n"
        " 3.00000000000000E+00 4.00000000000000E+00\n"
        "        -1         0         0         0         0         0         0\nEOS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(run({"show", "@DS"}).output,
              "kind       Coverage\n"
              "name       DS\n"
              "precision  double\n"
              "extent     0.1 2.0 3.0 4.0\n"
              "features\n"
              "  arc  1\n"
              "files\n"
              "  name      bytes\n"
              "  arc         192\n"
              "  coverage    128\n");
    EXPECT_EQ(run({"show", "@DS", "--json"}).object(),
              json::parse(R"({"kind":"Coverage","name":"DS","precision":"double",
                "extent":[0.1,2.0,3.0,4.0],"features":{"arc":1},
                "files":[{"name":"arc","bytes":192},{"name":"coverage","bytes":128}]})"));
}

TEST_F(Show, AMapTellsItsElementsAndASetItsRecords) {
    ASSERT_EQ(run({"import", INTAKE_SOURCE_DIR "/samples/wmap.e00", "@M"}).status, 0);
    const json map = run({"show", "@M", "--json"}).object();
    EXPECT_EQ(map["elements"].size(), 3U);
    EXPECT_EQ(map["elements"][2], json::parse(R"({"file":"A0007.PLT","title":"Element 7",
                                                  "bounds":[0.0,0.0,10.0,6.0]})"));
    ASSERT_EQ(run({"import", INTAKE_SOURCE_DIR "/samples/pcln.e00", "@LINES"}).status, 0);
    EXPECT_EQ(run({"show", "@LINES"}).status, 1);
    const json set = run({"show", "@LINES", "--json", "--kind", "lineset file"}).object();
    EXPECT_EQ(set["recordBytes"], 52);
    EXPECT_EQ(set["recordCount"], 19);
}

TEST_F(Show, ASetTellsOfNumbersThatNoReaderTakes) {
    std::string lines = "EXP  0 X\nCMK  2\n";
    for (const char* number : {"  1060", "  5000", "     0"}) {
        lines += "    " + std::string(number) + "         2         3         4         5\n";
        lines += " 6.0000000E+00 7.0000000E+00\n";
    }
    given(lines + "EOS\nEOS\n");
    ASSERT_EQ(import("MARKS"), 1);
    const json set = run({"show", "@MARKS", "--json", "--kind", "Markerset File"}).object();
    EXPECT_EQ(set["recordBytes"], 28);
    EXPECT_EQ(set["outside1To1060"], 2);
    EXPECT_EQ(set["strays"],
              json::parse(R"([{"record":2,"number":5000},{"record":3,"number":0}])"));
}

TEST_F(Show, AStackTellsItsGrids) {
    ASSERT_EQ(run({"import", INTAKE_SOURCE_DIR "/samples/jkstk.e00", "@JKSTK"}).status, 0);
    const json stack = run({"show", "@JKSTK", "--json"}).object();
    EXPECT_EQ(stack["members"], json::parse(R"(["JKA","JKB","JKC"])"));
    ASSERT_EQ(stack["grids"].size(), 3U);
    EXPECT_EQ(stack["grids"][1]["name"], "JKB");
    EXPECT_EQ(stack["grids"][1]["rows"], 40);
    EXPECT_EQ(stack["grids"][1]["tables"][0]["recordCount"], 349);
    EXPECT_EQ(stack["tables"][0]["items"].size(), 2U);
}

TEST_F(Show, ATableOfTheCoveragesNameIsAmongItsTables) {
    std::string text =
        "EXP  0 X\nARC  2\n"
        "        -1         0         0         0         0         0         0\nIFO  2\n";
    const std::string item =
        "NUMBER            4-1   14-1   5-1 50-1  -1  -1-1                   1-\n";
    for (const char* name : {"DS", "DSX", "DS.PAT"}) {
        text += std::string(name) + std::string(32 - std::string(name).size(), ' ') +
                "     1   1   4         1\n" + item + "          7\n";
    }
    given(text + "EOI\nEOS\n");
    ASSERT_EQ(import(), 1);
    std::vector<std::string> names;
    const json shown = run({"show", "@DS", "--json"}).object();
    for (const json& table : shown["tables"]) names.push_back(table["name"]);
    EXPECT_EQ(names, (std::vector<std::string>{"DS", "DS.PAT"}));
    EXPECT_EQ(records("record")[0]["table"], "DS");
    EXPECT_EQ(records("record")[0]["values"]["NUMBER"], 7);
}

}  // namespace
}  // namespace intake::testing
