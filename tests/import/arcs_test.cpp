#include "host/qxbase.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Arcs = ImportTest;

constexpr char kEnd[] =
    "        -1         0         0         0         0         0         0\nEOS\n";

TEST_F(Arcs, AreReadInBothPrecisions) {
    given(
        "EXP  0 X\nARC  2\n"
        "         1        12         1         2         3         4         3\n"
        " 1.0000000E+00 2.0000000E+00 3.0000000E+00 4.5000000E+00\n"
        " 5.0000000E+00-6.0000000E-01 9.9000000E+01 9.9000000E+01\n"
        "         7         0         1         2         3         4         0\n"
        "this line belongs to the arc without vertices\n" +
        std::string(kEnd));
    ASSERT_EQ(import(), 1);
    const auto single = records("arc");
    ASSERT_EQ(single.size(), 2U);
    EXPECT_EQ(single[0]["vertices"],
              json::parse("[[1.0,2.0],[3.0,4.5],[5.0,-0.6000000238418579]]"));
    EXPECT_EQ(single[1]["number"], 7);
    EXPECT_TRUE(single[1]["vertices"].empty());

    given(
        "EXP  0 X\nARC  3\n"
        "         1        12         1         2         3         4         2\n"
        " 1.00000000000000E-01 2.00000000000000E+00\n"
        " 3.00000000000000E+00 4.00000000000000E+00\n" +
        std::string(kEnd));
    ASSERT_EQ(import("DOUBLE"), 1);
    EXPECT_EQ(records("arc", "DOUBLE")[0]["vertices"], json::parse("[[0.1,2.0],[3.0,4.0]]"));
    EXPECT_EQ(records("dataset", "DOUBLE")[0]["precision"], "double");
}

TEST_F(Arcs, OverflowedUserIdsAreZeroAndToldOnceASection) {
    const std::string arc =
        "         1**********         1         2         3         4         1\n"
        " 1.0000000E+00 2.0000000E+00\n";
    const std::string end = std::string(kEnd).substr(0, 71);
    given("EXP  0 X\nARC  2\n" + arc + arc + end + "ARC  2\n" + arc + std::string(kEnd));
    ASSERT_EQ(import(), 1);
    const std::vector<Message> pair = {
        {QX_INFORM, "Arc file, Unavoidable loss of data for Arc User-ID, set to 0"},
        {QX_WARN, "Use IDEDIT command with LINE option to recover lost data."}};
    EXPECT_EQ(
        messages(),
        (std::vector<Message>{
            {QX_INFORM, " Creating Coverage " + path("DS")}, pair[0], pair[1], pair[0], pair[1]}));
    // A second section goes on behind the first.
    EXPECT_EQ(records("arc").size(), 3U);
}

TEST_F(Arcs, FailuresEndTheImportAndKeepWhatCameBefore) {
    const std::string good =
        "         1        12         1         2         3         4         1\n"
        " 1.0000000E+00 2.0000000E+00\n";
    struct Case {
        std::string lines;
        std::string message;
    };
    const Case cases[] = {
        {"         2         0         0         0         0         0        -5\n",
         "Invalid vertex count (IMPARC)"},
        {"         2         0**********         0         0         0         1\n",
         "Could not read \"**********\" in columns 21 to 30 of line 5 of " + path("in.e00")},
        {"", "ERROR, next volume " + path("in.e01") + " does not exist."},
    };
    int number = 0;
    for (const Case& each : cases) {
        given("EXP  0 X\nARC  2\n" + good + each.lines);
        const std::string dataset = "DS" + std::to_string(++number);
        EXPECT_EQ(import(dataset), 0);
        EXPECT_EQ(complaints(), std::vector<std::string>{each.message});
        EXPECT_EQ(records("arc", dataset).size(), 1U);
    }
}

}  // namespace
}  // namespace intake::testing
