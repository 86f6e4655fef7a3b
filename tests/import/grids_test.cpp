#include <sys/resource.h>

#include <csignal>

#include "host/qxbase.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using Grids = ImportTest;

struct Shape {
    std::string cellType = " 1";
    std::string noData = "-0.99990000000000E+04";
    std::string cellSize = " 0.10000000000000E+01 0.10000000000000E+01";
    std::string low = " 0.00000000000000E+00 0.00000000000000E+00";
    std::string high = " 0.70000000000000E+01 0.20000000000000E+01";  // seven columns, two rows
};

// The counts of the first line are read and not used.
std::string grid(const std::string& cells, const Shape& shape = {}) {
    return "EXP  0 X\nGRD  2\n         1         1" + shape.cellType + shape.noData + "\n" +
           shape.cellSize + "\n" + shape.low + "\n" + shape.high + "\n" + cells + "EOG\nEOS\n";
}

const std::string kIntegerRow =
    "             1             2             3             4             5\n"
    "             6             7             8             9            10\n";

TEST_F(Grids, IntegerAndFloatingCellsHaveTheirOwnNoData) {
    Shape integers;
    integers.noData = "-0.99997000000000E+04";  // truncated, not rounded
    given(
        grid("         -9999        -10000   -2147483647   -2147483648    2147483647\n"
             "             0            -1\n" +
                 kIntegerRow,
             integers));
    ASSERT_EQ(import(), 1);
    EXPECT_TRUE(complaints().empty());
    EXPECT_EQ(records("grid")[0],
              json::parse(R"({"class":"grid","columns":7,"rows":2,"cellType":"integer",)"
                          R"("cellSize":[1.0,1.0],"bounds":[0.0,0.0,7.0,2.0]})"));
    EXPECT_EQ(records("row")[0]["cells"],
              json::parse("[null,-10000,null,-2147483648,2147483647,0,-1]"));
    EXPECT_EQ(records("row")[1]["cells"], json::parse("[1,2,3,4,5,6,7]"));
    EXPECT_TRUE(std::filesystem::is_directory(path("info")));

    // No cell is equal to a value that none can hold.
    integers.noData = "-0.10000000000000E+11";
    given(grid(kIntegerRow + kIntegerRow, integers));
    ASSERT_EQ(import("WIDE"), 1);
    EXPECT_EQ(records("row", "WIDE")[0]["cells"], json::parse("[1,2,3,4,5,6,7]"));

    Shape reals;
    reals.cellType = " 0";
    reals.noData = "-0.12345678901234E+05";  // -12345.68 to seven digits
    given(
        grid("-0.1234568E+05-0.1234567E+05           1.5            15           NaN\n"
             "-0.3402824E+39 0.1000000E+00\n"
             " 0.1000000E+01-.12345680E+05-0.12345681E+5 0.0000000E+00\n",
             reals));
    ASSERT_EQ(import("REAL"), 1);
    EXPECT_EQ(records("grid", "REAL")[0]["cellType"], "float");
    // A field without an exponent is not shifted here.
    EXPECT_EQ(records("row", "REAL")[0]["cells"],
              json::parse(R"([null,-12345.669921875,1.5,1.500000053056283e-06,"NaN",)"
                          R"("-Infinity",0.10000000149011612])"));
}

TEST_F(Grids, SurplusLinesAreDroppedAndAPartOfARowIsNotWritten) {
    struct Case {
        std::string lines;
        std::size_t rows;
    };
    const Case cases[] = {
        {kIntegerRow + kIntegerRow + kIntegerRow + kIntegerRow, 2},
        {kIntegerRow + kIntegerRow.substr(0, 71), 1},
        {kIntegerRow.substr(0, 71), 0},
    };
    int number = 0;
    for (const Case& each : cases) {
        const std::string dataset = "DS" + std::to_string(++number);
        given(grid(each.lines));
        EXPECT_EQ(import(dataset), 1);
        EXPECT_TRUE(complaints().empty());
        EXPECT_EQ(records("row", dataset).size(), each.rows);
    }
}

TEST_F(Grids, AFailedSectionKeepsItsRowsAndLeavesNoTraceInTheNext) {
    // The first line is decoded before anyone asks whether it is the end.
    const std::string damaged[] = {"", kIntegerRow + "        1.0000\n",
                                   kIntegerRow + "    2147483648\n"};
    std::size_t rows = 0;
    int number = 0;
    for (const std::string& lines : damaged) {
        const std::string dataset = "BAD" + std::to_string(++number);
        given(grid(lines));
        EXPECT_EQ(import(dataset), 0);
        EXPECT_EQ(complaints().size(), 1U);
        EXPECT_EQ(records("row", dataset).size(), rows);
        rows = 1;
        given(grid(kIntegerRow + kIntegerRow));
        EXPECT_EQ(import("GOOD" + dataset), 1);
        EXPECT_EQ(records("row", "GOOD" + dataset).size(), 2U);
    }
}

TEST_F(Grids, WhatCannotBeAGridIsNotCreated) {
    const std::string zero = " 0.00000000000000E+00";
    const std::string one = " 0.10000000000000E+01";
    std::vector<Shape> shapes(8);
    shapes[0].cellSize = zero + one;
    shapes[1].cellSize = one + "-0.10000000000000E+01";
    shapes[2].cellSize = "                  NaN" + one;
    shapes[3].high = "             Infinity" + one;
    shapes[4].low = one + "            -Infinity";
    shapes[5].high = one + zero;                                // no rows
    shapes[6].high = " 0.40000000000000E+09" + one;             // too many columns
    shapes[7].high = " 0.10000000000000+300-0.1000000000+300";  // beyond any number of cells
    int number = 0;
    for (const Shape& shape : shapes) {
        const std::string dataset = "DS" + std::to_string(++number);
        given(grid(kIntegerRow, shape));
        EXPECT_EQ(import(dataset), 1) << dataset;
        EXPECT_EQ(complaints(),
                  std::vector<std::string>{"Unable to create " + path(dataset) + "."});
        EXPECT_FALSE(std::filesystem::exists(path(dataset))) << dataset;
    }
    // A name that is taken, by whatever, and a workspace that can have no INFO directory.
    std::filesystem::create_directory(path("TAKEN"));
    given(grid(kIntegerRow));
    EXPECT_EQ(import("TAKEN"), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>{"Unable to create " + path("TAKEN") + "."});
    EXPECT_TRUE(std::filesystem::is_empty(path("TAKEN")));
    writeFile(path("info"), "a file");
    EXPECT_EQ(import(), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>{"Unable to create " + path("DS") + "."});
    EXPECT_FALSE(std::filesystem::exists(path("DS")));
}

TEST_F(Grids, AFailedWriteEndsTheSectionAndIsTold) {
    Shape wide;
    wide.high = " 0.20000000000000E+05 0.50000000000000E+02";
    std::string row;
    for (int line = 0; line < 4000; ++line) row += kIntegerRow.substr(0, 71);
    std::string cells;
    for (int each = 0; each < 20; ++each) cells += row;
    given(grid(cells, wide));
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit low = {600000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &low);
    const int32_t result = import();
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(complaints(), (std::vector<std::string>{
                                "Error in writing " + path("DS") + ".",
                                "Could not write " + path("DS/grid") + ": File too large"}));
    // The rows that reached the disk are whole.
    const auto rows = records("row");
    EXPECT_GE(rows.size(), 1U);
    EXPECT_LT(rows.size(), 20U);
    for (const json& each : rows) EXPECT_EQ(each["cells"][19999], 5);
}

}  // namespace
}  // namespace intake::testing
