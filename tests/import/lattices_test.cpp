#include "host/qxbase.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Lattices = ImportTest;

// A lattice section with its last line, which nobody looks at, and the end of the file.
std::string lattice(const std::string& size, const std::string& cells) {
    return "EXP  0 X\nLAT  2\n" + size +
           "\n 1.0000000E-01-2.0000000E+00 2.5000000E-01 5.0000000E-01\n" +
           "-1.0000000E+00 9.1000000E+00\n" + cells + "ARC  2 is not looked at\nEOS\n";
}

TEST_F(Lattices, RowsBeginOnFreshLinesAndNoDataIsTold) {
    given(lattice("         5         2",
                  // Nearest, one step of single precision away, and two steps.
                  "-9.9990000E+13-9.9989990E+13-9.9989985E+13-9.9990020E+13\n"
                  "           1.5 this is behind the row\n"
                  "           NaN-3.4028235E+38 1.0000000E-01 1.0000000E+39\n"
                  " 7.0000000E+00\n"));
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(messages(), (std::vector<Message>{{QX_INFORM, " Creating Lattice " + path("DS")}}));
    EXPECT_EQ(records("lattice"),
              std::vector<json>{json::parse(
                  R"({"class":"lattice","columns":5,"rows":2,"origin":[0.10000000149011612,-2.0],)"
                  R"("spacing":[0.25,0.5],"range":[-1.0,9.100000381469727]})")});
    const auto rows = records("row");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0]["cells"], json::parse("[null,null,-99989984378880.0,-99990017933312.0,"
                                            "0.15000000596046448]"));
    EXPECT_EQ(rows[1]["cells"], json::parse(R"(["NaN",null,0.10000000149011612,"Infinity",7.0])"));
}

TEST_F(Lattices, WithoutColumnsOrRowsHoldNothing) {
    const char* sizes[] = {"         0         3", "        -4         3", "         2         0",
                           "         2        -1"};
    int number = 0;
    for (const char* size : sizes) {
        const std::string dataset = "DS" + std::to_string(++number);
        given(lattice(size, ""));
        EXPECT_EQ(import(dataset), 1) << size;
        EXPECT_TRUE(complaints().empty()) << size;
        EXPECT_EQ(records("lattice", dataset).size(), 1U) << size;
        EXPECT_TRUE(records("row", dataset).empty()) << size;
    }
}

TEST_F(Lattices, FailuresLeaveWhatWasThereAndKeepWholeRows) {
    const std::string row = " 1.0000000E+00 2.0000000E+00\n";
    given(lattice("         2         1", row));
    ASSERT_EQ(import("OLD"), 1);
    const std::string before = fileBytes(path("OLD/lattice"));
    writeFile(path("FILE"), "a file");
    const std::string ended = "Error in importing";
    const std::string cut = "ERROR, next volume " + path("in.e01") + " does not exist.";
    struct Case {
        std::string dataset;
        std::string text;
        std::vector<std::string> complaints;
        std::size_t rows;
    };
    const Case cases[] = {
        {"OLD", lattice("         2         1", row), {path("OLD") + " already exists", ended}, 1},
        {"FILE",
         lattice("         2         1", row),
         {"Cannot create lattice " + path("FILE"), ended},
         0},
        {"WIDE",
         lattice(" 999999999         1", row),
         {"Cannot create lattice " + path("WIDE"), ended},
         0},
        {"HIGH",
         lattice("         1 999999999", row),
         {"Cannot create lattice " + path("HIGH"), ended},
         0},
        // A size that is only claimed costs nothing.
        {"CLAIM", "EXP  0 X\nLAT  2\n 200000000 200000000\n\n\n" + row + row, {cut}, 0},
        {"CUT", "EXP  0 X\nLAT  2\n         2         3\n\n\n" + row + row, {cut}, 2},
        {"FIELD",
         lattice("         2         3", row + "         1.0.0\n"),
         {"Could not read \"         1.0.0\" in columns 1 to 14 of line 7 of " + path("in.e00")},
         1},
    };
    for (const Case& each : cases) {
        given(each.text);
        EXPECT_EQ(import(each.dataset), 0) << each.dataset;
        EXPECT_EQ(complaints(), each.complaints);
        if (each.dataset == "WIDE" || each.dataset == "HIGH") {
            EXPECT_FALSE(std::filesystem::exists(path(each.dataset)));
        } else if (each.dataset != "FILE") {
            EXPECT_EQ(records("row", each.dataset).size(), each.rows) << each.dataset;
        }
    }
    EXPECT_EQ(fileBytes(path("OLD/lattice")), before);
    EXPECT_LT(std::filesystem::file_size(path("CLAIM/lattice")), 1000U);
}

}  // namespace
}  // namespace intake::testing
