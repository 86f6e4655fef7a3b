// Grids, lattices and stacks as GeoTIFF: every cell held against the dump's.
#include <cmath>
#include <limits>

#include "tests/support/columns.h"
#include "tests/support/program_test.h"
#include "tests/support/tiff_cells.h"

namespace intake::testing {
namespace {

// A grid of cells of size 2 by 4 whose lower left corner is 10, 20; type 1 has integers.
std::string grid(int type, int columns, int rows, const std::vector<std::string>& cells) {
    std::string text = "GRD  3\n" + integers({1, 1}) + (type == 1 ? " 1" : " 2") +
                       reals(3, {-9999}) + '\n' + reals(3, {2, 4}) + '\n' + reals(3, {10, 20}) +
                       '\n' + reals(3, {10.0 + 2 * columns, 20.0 + 4 * rows}) + '\n';
    for (std::size_t at = 0; at < cells.size(); ++at) {
        char field[16];
        std::snprintf(field, sizeof field, "%14s", cells[at].c_str());
        text += field;
        const std::size_t inRow = at % static_cast<std::size_t>(columns) + 1;
        if (inRow % 5 == 0 || inRow == static_cast<std::size_t>(columns)) text += '\n';
    }
    return text + "EOG\n";
}

std::string table(const std::string& name) {
    char line[100];
    std::snprintf(line, sizeof line, "%-32s%2s%4d%4d%4d%10d\n", name.c_str(), "", 1, 1, 0, 1);
    return "IFO  2\n" + std::string(line) +
           "VALUE             4-1   14-1   4-1 50-1  -1  -1-1                   1-\n          7\n"
           "EOI\n";
}

class ExportRasters : public ProgramTest {
  protected:
    void imported(const std::string& sections) {
        std::filesystem::remove_all(path("DS"));
        std::filesystem::remove_all(path("info"));
        given("EXP  0 X\n" + sections + "EOS\n");
        ASSERT_EQ(import(), 1);
    }
    Outcome exported(std::vector<std::string> options = {}, const std::string& out = "@out.tif") {
        std::vector<std::string> words = {"export", "--force", "--json", "@DS", out};
        words.insert(words.end(), options.begin(), options.end());
        return run(words);
    }
    TiffImage image(const std::string& name = "out.tif") const {
        const auto images = imagesOf(path(name));
        return images.empty() ? TiffImage{} : images[0];
    }
    // How many cells are not those of the dump; rows are in order.
    int wrongCells(const TiffImage& found, double noData, const std::string& dataset = "DS",
                   std::size_t band = 0) const {
        int wrong = 0;
        uint32_t row = 0;
        for (const json& record : records("row", dataset)) {
            for (uint32_t column = 0; column < found.columns; ++column) {
                const json& cell = record["cells"][column];
                const double value = found.at(column, row, band);
                const bool same = cell.is_null()     ? value == noData
                                  : cell.is_number() ? value == cell.get<double>()
                                  : cell == "NaN"
                                      ? std::isnan(value)
                                      : std::isinf(value) && (value < 0) == (cell == "-Infinity");
                wrong += !same;
            }
            ++row;
        }
        return row == found.rows ? wrong : -1;
    }
};

constexpr double kMissing = -2147483647;
const double kMissingReal = std::numeric_limits<float>::lowest();

TEST_F(ExportRasters, GridsKeepTheirCellsInTheSmallestTypeThatHoldsThem) {
    const struct {
        int type, columns, rows;
        std::vector<std::string> cells;
        const char* typeName;
        std::vector<std::string> options = {};
        double noData = kMissing;
    } cases[] = {
        {1, 1, 1, {"7"}, "uint8"},
        {1, 1, 3, {"0", "255", "1"}, "uint8"},
        {1, 3, 1, {"-1", "255", "1"}, "int16"},
        {1, 2, 1, {"0", "65535"}, "uint16"},
        {1, 2, 1, {"-1", "65535"}, "int32"},
        {1, 3, 2, {"1", "2", "-9999", "4", "5", "6"}, "int32"},
        {1, 3, 2, {"1", "2", "-9999", "4", "5", "6"}, "uint8", {"--type", "uint8"}, 255},
        {1, 2, 1, {"255", "-9999"}, "uint8", {"--type", "uint8"}, 0},
        {1, 2, 1, {"-5", "-9999"}, "float32", {"--type", "float32"}, kMissingReal},
        {1, 2, 1, {"2147483647", "-9999"}, "float64", {"--type", "float64"}},
        {1, 2, 1, {"-9999", "-9999"}, "int32"},
        {1, 3, 1, {"2147483647", "-2147483648", "-2147483647"}, "int32"},
        {2, 1, 1, {"-9999"}, "float32", {}, kMissingReal},
        {2,
         3,
         2,
         {"NaN", "1.5", "-9999", "Infinity", "-Infinity", "-0.0"},
         "float32",
         {},
         kMissingReal},
        {2, 2, 1, {"0.1", "-9999"}, "float64", {"--type", "float64"}, kMissingReal},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.cells[0] + " as " + each.typeName);
        imported(grid(each.type, each.columns, each.rows, each.cells));
        const Outcome outcome = exported(each.options);
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(outcome.object()["layers"][0]["type"], each.typeName);
        EXPECT_EQ(wrongCells(image(), each.noData), 0);
        EXPECT_EQ(image().columns, static_cast<uint32_t>(each.columns));
        // Areas from their upper left corner.
        EXPECT_EQ(tagOf<double>(path("out.tif"), 33550), (std::vector<double>{2, 4, 0}));
        EXPECT_EQ(tagOf<double>(path("out.tif"), 33922),
                  (std::vector<double>{0, 0, 0, 10, 20.0 + 4 * each.rows, 0}));
        EXPECT_EQ(tagOf<uint16_t>(path("out.tif"), 34735)[11], 1);
        const std::string noData = textTagOf(path("out.tif"), 42113);
        const bool told = each.noData != kMissing || each.typeName == std::string("int32") ||
                          each.typeName == std::string("float64");
        EXPECT_EQ(noData.empty() ? 0.5 : std::stod(noData), told ? each.noData : 0.5);
    }
}

TEST_F(ExportRasters, LatticesArePoints) {
    const std::string head = "LAT  2\n" + integers({3, 2}) + '\n' + reals(2, {10, 20, 2, 4}) + '\n';
    const std::string cells = reals(2, {1.1, -9.999e13, 3}) + '\n' + reals(2, {4, 5, 6}) + '\n';
    given("EXP  0 X\n" + head + reals(2, {0, 9}) + '\n' + cells + "\nEOS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(exported().status, 0);
    EXPECT_EQ(wrongCells(image(), kMissingReal), 0);
    EXPECT_EQ(tagOf<double>(path("out.tif"), 33922), (std::vector<double>{0, 0, 0, 10, 24, 0}));
    EXPECT_EQ(tagOf<uint16_t>(path("out.tif"), 34735)[11], 2);
    EXPECT_NE(textTagOf(path("out.tif"), 34737).find("undefined"), std::string::npos);
    // The point of the middle column, and what lies in the rectangle around it.
    EXPECT_EQ(exported({"--where-within", "11,19,13.9,30"}).status, 0);
    EXPECT_EQ(image().cells[0], (std::vector<double>{kMissingReal, 5}));
    EXPECT_EQ(tagOf<double>(path("out.tif"), 33922)[3], 12);
    EXPECT_EQ(exported({"--where-within", "10.5,0,11.5,99"}).status, 1);

    given("EXP  0 X\nLAT  2\n" + integers({0, 2}) + '\n' + reals(2, {10, 20, 2, 4}) + '\n' +
          reals(2, {0, 9}) + "\n\nEOS\n");
    ASSERT_EQ(import("NONE"), 1);
    EXPECT_NE(run({"export", "@NONE", "@none.tif"}).errors.find("has no cells"), std::string::npos);
}

TEST_F(ExportRasters, TablesStandBesideAndGoToAGeoPackageAlone) {
    imported(grid(1, 1, 2, {"7", "-9999"}) + table("DS.VAT"));
    EXPECT_EQ(exported().status, 0);
    EXPECT_EQ(fileBytes(path("out.VAT.csv")), "fid,VALUE\r\n1,7\r\n");
    const Outcome outcome = exported({"--type", "float32"}, "@out.gpkg");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_TRUE(outcome.object()["notes"].empty());
    EXPECT_EQ(outcome.object()["losses"][0]["reason"], "the format has no place for a raster");
    EXPECT_EQ(outcome.object()["layers"][0]["name"], "DS.VAT");
    for (const auto& [options, told] :
         {std::pair{std::vector<std::string>{"--type", "uint8", "--layer", "X"}, "no layer X"},
          {std::vector<std::string>{"--type", "int7"}, "--type"}}) {
        EXPECT_NE(exported(options, "@bad.tif").errors.find(told), std::string::npos);
    }
    imported(grid(1, 2, 1, {"300", "-1"}));
    EXPECT_NE(exported({"--type", "uint8"}).errors.find("-1 to 300, which uint8 does not hold"),
              std::string::npos);
    imported(grid(2, 1, 1, {"7.5"}));
    EXPECT_NE(exported({"--type", "int16"}).errors.find("no whole numbers"), std::string::npos);
    given("EXP  0 X\nLOG  2\nEOL\nEOS\n");
    import("COV");
    EXPECT_EQ(run({"export", "@COV", "@cov.tif"}).status, 1);
}

TEST_F(ExportRasters, AStackIsAFolderOfFilesOrTheBandsOfOne) {
    const std::string first = grid(1, 2, 2, {"1", "-9999", "3", "4"});
    const auto stack = [&](const std::string& second) {
        for (const char* name : {"A", "B"}) std::filesystem::remove_all(path(name));
        imported("STK  2\n" + integers({1, 2}) + "\nA\nB\nEOK\n" + first + table("A.VAT") + second +
                 "STK  2\n" + integers({2, 2}) + "\nEOK\n");
    };
    stack(grid(2, 2, 2, {"0.5", "6", "-9999", "8"}));
    EXPECT_EQ(exported({"--format", "geotiff"}, "@out").status, 0);
    EXPECT_EQ(wrongCells(image("out/A.tif"), kMissing, "A"), 0);
    EXPECT_EQ(wrongCells(image("out/B.tif"), kMissingReal, "B"), 0);
    EXPECT_TRUE(std::filesystem::exists(path("out/A.VAT.csv")));
    EXPECT_NE(exported().errors.find("--bands"), std::string::npos);

    const Outcome bands = exported({"--bands"});
    EXPECT_EQ(bands.status, 0) << bands.errors;
    EXPECT_EQ(bands.object()["layers"][0]["bands"], 2);
    EXPECT_EQ(wrongCells(image(), kMissingReal, "A", 0), 0);
    EXPECT_EQ(wrongCells(image(), kMissingReal, "B", 1), 0);
    const std::string bytes = fileBytes(path("out.tif"));
    EXPECT_NE(bytes.find("Stack DS\nBand 1: A\nBand 2: B"), std::string::npos);
    EXPECT_NE(textTagOf(path("out.tif"), 42112).find("sample=\"1\" role=\"description\">B</Item>"),
              std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(path("out.A.VAT.csv")));

    stack(grid(1, 1, 2, {"1", "2"}));
    EXPECT_NE(exported({"--bands"}).errors.find("cannot be bands of one raster"),
              std::string::npos);
    std::filesystem::remove_all(path("B"));
    const Outcome one = exported({}, "@out.tif");
    EXPECT_EQ(one.status, 3);
    EXPECT_EQ(one.object()["losses"][0]["reason"], "a member is not there");
}

TEST_F(ExportRasters, AProjectionWithoutACodeIsTold) {
    imported(grid(1, 1, 1, {"7"}) +
             "PRJ  2\nProjection MOLLWEIDE\n~\nUnits METERS\n~\nSpheroid SPHERE\n~\nParameters\n~\n"
             "6370997.0\n~\n-90 0 0\n~\n0.0\n~\n0.0\n~\nEOP\n");
    const Outcome outcome = exported();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.object()["notes"].dump().find("no code for the projection Mollweide"),
              std::string::npos)
        << outcome.object();
    EXPECT_NE(textTagOf(path("out.tif"), 34737).find("Mollweide"), std::string::npos);
}

// The header of a damaged file says what it likes.
TEST_F(ExportRasters, ClaimsAreHeldAgainstWhatIsStored) {
    imported(grid(1, 2, 4, {"1", "2", "3", "4", "5", "6", "7", "8"}));
    const std::string file = path("DS/grid");
    const std::string whole = fileBytes(file);
    writeFile(file, whole.substr(0, whole.size() - 10));
    const Outcome cut = exported();
    EXPECT_EQ(cut.status, 3);
    EXPECT_EQ(cut.object()["losses"][0]["count"], 2);
    EXPECT_EQ(image().cells[0][3], 4);
    EXPECT_EQ(image().cells[0][7], kMissing);
    std::string claims = whole;
    claims.replace(16, 8, std::string("\x10\0\0\0\x10\0\0\0", 8));  // columns and rows
    writeFile(file, claims);
    EXPECT_NE(exported().errors.find("has no cells"), std::string::npos);
    claims.replace(16, 8, std::string("\0\0\0\x02\x10\0\0\0", 8));
    writeFile(file, claims);
    const Outcome tall = exported();
    EXPECT_EQ(tall.object()["losses"][0]["reason"], "a row is not stored, and left out");
    EXPECT_EQ(image().cells[0], (std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8}));
}

}  // namespace
}  // namespace intake::testing
