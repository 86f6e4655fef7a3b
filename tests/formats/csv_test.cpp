#include "formats/csv/csv.h"

#include <cmath>

#include "tests/formats/formats_test.h"

namespace formats::testing {

namespace {

using intake::testing::fileBytes;

class CsvTest : public FormatsTest {};

}  // namespace

TEST_F(CsvTest, QuotesWhatNeedsQuotes) {
    auto out = csv::tables().make(path("out.csv"), {});
    out->begin(layer("a", GeometryType::kPoint,
                     {{"ROADS#", ColumnType::kInteger},
                      {"a,\"b", ColumnType::kText},
                      {"x", ColumnType::kReal, 8},
                      {"X", ColumnType::kReal, 4},
                      {"day", ColumnType::kDate}}));
    const Value values[] = {INT64_MIN, "say \"hi\",\r\nnow", 0.1, double(0.1F), Date{7, 8, 9}};
    EXPECT_TRUE(out->add(1, Parts({{1, 2}}), values));
    const Value odd[] = {{}, "", NAN, -INFINITY, {}};
    EXPECT_TRUE(out->add(2, {}, odd));
    const Value blanks[] = {{}, " \u00e4;", 1e300, 5.0, {}};
    EXPECT_TRUE(out->add(3, {}, blanks));
    out->end();
    EXPECT_FALSE(out->text({"log", "text/plain", "", "", "said"}));
    EXPECT_NE(complaint([&] { out->begin(layer("b", GeometryType::kNone)); }).find("one table"),
              std::string::npos);
    out->finish();
    EXPECT_EQ(fileBytes(path("out.csv")),
              "fid,ROADS#,\"a,\"\"b\",x,X_2,day\r\n"
              "1,-9223372036854775808,\"say \"\"hi\"\",\r\nnow\",0.1,0.1,0007-08-09\r\n"
              "2,,\"\",nan,-inf,\r\n"
              "3,,\" \u00e4;\",1e+300,5,\r\n");
}

TEST_F(CsvTest, HoldsGeometriesAsText) {
    Options options;
    options.wellKnownText = true;
    options.folder = true;
    auto out = csv::tables().make(path("out"), options);
    const auto one = [&](const char* name, GeometryType type, const Parts& parts) {
        out->begin(layer(name, type));
        EXPECT_TRUE(out->add(1, parts, {}));
        EXPECT_TRUE(out->add(2, {}, {}));
        EXPECT_FALSE(out->add(3, Parts({{1, NAN, 3}}), {}));
        out->end();
    };
    const Part ring{0, 0, 9, 0, 0, 9, 0, 0};
    const Part hole{1, 1, 1, 2, 2, 1, 1, 1};
    one("point", GeometryType::kPoint, Parts({{1.5, -2}}));
    one("pointz", GeometryType::kPointZ, Parts({{1, 2, 3}}));
    one("line", GeometryType::kLineString, Parts({{0, 5, 2, 1e-7}}));
    one("linez", GeometryType::kLineStringZ, Parts({{0, 5, 9, 2, -3, 8}}));
    one("lines", GeometryType::kMultiLineString, Parts({{0, 0, 1, 1}, {5, 5, 6, 6}}));
    one("polygon", GeometryType::kPolygon, Parts({ring, hole}));
    one("polygonz", GeometryType::kPolygonZ, Parts({{0, 0, 7, 9, 0, 7, 0, 9, 7, 0, 0, 7}}));
    one("polygons", GeometryType::kMultiPolygon, Parts({ring, hole, ring}, {2, 1}));
    one("single", GeometryType::kMultiPolygon, Parts({ring, hole}));
    out->finish();
    const std::string ringText = "(0 0, 9 0, 0 9, 0 0)";
    const std::string holeText = "(1 1, 1 2, 2 1, 1 1)";
    const std::pair<const char*, std::string> expected[] = {
        {"point", "POINT (1.5 -2)"},
        {"pointz", "POINT Z (1 2 3)"},
        {"line", "LINESTRING (0 5, 2 1e-07)"},
        {"linez", "LINESTRING Z (0 5 9, 2 -3 8)"},
        {"lines", "MULTILINESTRING ((0 0, 1 1), (5 5, 6 6))"},
        {"polygon", "POLYGON (" + ringText + ", " + holeText + ")"},
        {"polygonz", "POLYGON Z ((0 0 7, 9 0 7, 0 9 7, 0 0 7))"},
        {"polygons", "MULTIPOLYGON ((" + ringText + ", " + holeText + "), (" + ringText + "))"},
        {"single", "MULTIPOLYGON ((" + ringText + ", " + holeText + "))"},
    };
    for (const auto& [name, text] : expected) {
        EXPECT_EQ(fileBytes(path("out/" + std::string(name) + ".csv")),
                  "fid,geom\r\n1,\"" + text + "\"\r\n2,\r\n3,\r\n");
    }
}

}  // namespace formats::testing
