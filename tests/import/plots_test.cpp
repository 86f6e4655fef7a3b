#include <filesystem>

#include "host/qxbase.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Plots = ImportTest;

TEST_F(Plots, RecordsSetWhatTheyCarryAndKeepTheRest) {
    given({"EXP  0 X", "PLT  2", "&&A title", " 9-1.00000E+00 6.00000E+00",
           " 1 1.50000E+00-2.50000E+00", " 0         7", "10        12F", "-3abcdefghijk",
           " 5 9.00000E+00 0.00000E+00", "10         1T", " 2                   12345", "EOP",
           "EOS"});
    ASSERT_EQ(import(), 1);
    EXPECT_TRUE(complaints().empty());
    const json plot = records("plot").at(0);
    EXPECT_EQ(plot["title"], "&&A title");
    // No line gave xmin and xmax.
    EXPECT_EQ(plot["bounds"],
              json::parse("[8.999999970144369e+27,-1.0,-8.999999970144369e+27,6.0]"));
    std::string told;
    for (const json& record : records("plotRecord")) {
        told += record["code"].dump() + record["r"].dump() + record["i"].dump() +
                record["text"].dump() + "\n";
    }
    EXPECT_EQ(told,
              "1[1.5,-2.5][0,0]\"\"\n"
              "0[1.5,-2.5][7,0]\"\"\n"
              "10[12.0,-2.5][12,0]\"\"\n"
              "-3[12.0,-2.5][12,0]\"abcdefgh\"\n"
              "5[9.0,0.0][12,0]\"abcdefgh\"\n"
              "10[1.0,0.0][1,1]\"abcdefgh\"\n"
              // Five decimals are implied, and without an exponent the value is shifted.
              "2[0.0,0.01234500017017126][1,1]\"abcdefgh\"\n");
}

TEST_F(Plots, MapsKeepTheOrderOfTheirElements) {
    given({"EXP  0 X", "MAP  2", "Z0009.PLT", "PLT  2", "Nine", " 1 1.00000E+00 1.00000E+00", "EOP",
           "Axx.PLT", "PLT", "No number", "EOP", "EOM", "EOS"});
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(records("map")[0]["elements"], json::parse(R"(["Z0009.PLT","Axx.PLT"])"));
    EXPECT_EQ(records("plot")[1]["title"], "No number");
    EXPECT_EQ(records("plotRecord").at(0)["element"], "Z0009.PLT");

    given({"EXP  0 X", "MAP  2", "EOM", "EOS"});
    ASSERT_EQ(import("EMPTY"), 1);
    EXPECT_TRUE(records("map", "EMPTY")[0]["elements"].empty());
}

TEST_F(Plots, FailuresAreToldAndLeaveWhatCameBefore) {
    given({"EXP  0 X", "PLT  2", "T", "EOP", "EOS"});
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(import(), 0);
    EXPECT_EQ(complaints()[0], "File " + path("DS") + " already exists.");
    EXPECT_EQ(import("no/where"), 0);
    EXPECT_EQ(complaints()[0], "Unable to create " + path("no/where") + ".");

    const std::vector<std::string> good = {"EXP  0 X", "MAP  2", "A0001.PLT", "PLT  2", "T", "EOP"};
    struct Case {
        std::vector<std::string> lines;
        std::vector<std::string> texts;
    };
    const Case cases[] = {
        {{"A0002.PLT", "ARC  2"}, {"Invalid MAP import file"}},
        {{"../ESCAPE", "PLT  2", "T", "EOP"}, {"Invalid MAP import file"}},
        {{"", "PLT  2", "T", "EOP"}, {"Invalid MAP import file"}},
        {{"..", "PLT  2", "T", "EOP"}, {"Invalid MAP import file"}},
        {{"A0001.PLT", "PLT  2", "T", "EOP"},
         {"File " + path("MAP4") + "/A0001.PLT already exists.", "Error importing MAP element 1"}},
    };
    int number = -1;
    for (const Case& each : cases) {
        std::vector<std::string> lines = good;
        lines.insert(lines.end(), each.lines.begin(), each.lines.end());
        given(lines);
        const std::string name = "MAP" + std::to_string(++number);
        EXPECT_EQ(import(name), 0);
        std::vector<std::string> texts = each.texts;
        texts.push_back("Error in importing");
        EXPECT_EQ(complaints(), texts);
        EXPECT_EQ(records("map", name)[0]["elements"], json::parse(R"(["A0001.PLT"])"));
    }
    EXPECT_FALSE(std::filesystem::exists(path("ESCAPE")));
    EXPECT_EQ(import("MAP0"), 0);
    EXPECT_EQ(complaints()[0], "Cannot create MAP " + path("MAP0"));
}

}  // namespace
}  // namespace intake::testing
