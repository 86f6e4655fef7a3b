#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using SideSections = ImportTest;

constexpr char kArcs[] =
    "EXP  0 X\nARC  2\n"
    "        -1         0         0         0         0         0         0\n";

TEST_F(SideSections, TolerancesReplaceThoseBefore) {
    const std::string end =
        "        -1         0         0         0         0         0         0\n";
    given(std::string(kArcs) + "TOL  2\n         9         9 9.0000000E+00\n" + end +
          "TOL  3\n         1         2 1.00000000000000E-01\n        10         1\n" + end +
          "EOS\n");
    ASSERT_EQ(import(), 1);
    const auto rows = records("tolerance");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0],
              json::parse(R"({"class":"tolerance","row":1,"column1":1,"column2":2,"value":0.1})"));
    EXPECT_EQ(rows[1]["column1"], 10);
    // The working tolerance alone, and more rows than there are.
    std::array<int32_t, 3> column1, column2;
    std::array<double, 3> values;
    int32_t status = 0;
    qx::call(tolget_, std::string_view(path("DS")), 1, column1, column2, values, status);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(values[0], 0.1);
    qx::call(tolget_, std::string_view(path("DS")), 3, column1, column2, values, status);
    EXPECT_NE(status, 0);

    given(std::string(kArcs) + "TOL  2\n" + end + "EOS\n");
    ASSERT_EQ(import("NONE"), 1);
    EXPECT_EQ(records("dataset", "NONE")[0]["counts"]["tolerance"], 0);
}

TEST_F(SideSections, TextsTakeTwoLinesToARecord) {
    const std::string long1 = std::string(79, 'a') + "b";
    const std::string long2 = std::string(79, 'c');
    given(std::string(kArcs) + "LOG  2\n" + long1 + "\n~" + long2 + "\n\n~\nEOLx\nEOL\nEOL\n" +
          "PRJ  2\nEOP\nEOS\n");
    ASSERT_EQ(import(), 1);
    // The end mark is none in a record's second line, whose first column is a filler.
    EXPECT_EQ(records("log")[0]["lines"],
              (json::array({long1 + long2, "", "EOLx" + std::string(76, ' ') + "OL"})));
    EXPECT_EQ(records("projection"),
              std::vector<json>{json::parse(R"({"class":"projection","lines":[]})")});
    EXPECT_EQ(fileBytes(path("DS") + "/log").size(), 159 + 1 + 1 + 82 + 1U);
}

}  // namespace
}  // namespace intake::testing
