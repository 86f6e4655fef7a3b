// What a second section of a kind does: docs/repeated-sections.md, row by row.
#include "tests/support/columns.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

using RepeatedSections = ImportTest;

const std::string kEnd = integers({-1, 0, 0, 0, 0, 0, 0}) + '\n';

std::string annotation(int userId) {
    std::string text = integers({userId, 1, 0, 0, 1, 1, 1, 0}) + '\n';
    for (int table = 0; table < 6; ++table) text += integers({0, 0, 0, 0, 0, 0, 0}) + '\n';
    return text + reals(2, {1}) + '\n' + reals(2, {1, 0, 0}) + "\nx\n";
}
std::string polygon(int arc) {
    return integers({1}) + reals(2, {0, 0, 1, 1}) + '\n' + integers({arc, 1, 1}) + '\n';
}
const std::string kEndOfPolygons = integers({-1}) + reals(2, {0, 0, 0, 0}) + '\n';
std::string table(const std::string& name, int records) {
    return name + std::string(34 - name.size(), ' ') + "   0   0   0" + integers({records}) + '\n';
}

struct Case {
    const char* code;
    std::string first;
    std::string second;
    const char* className;
    const char* key;
    std::vector<json> kept;
};

const std::vector<Case>& casesOfCoverages() {
    const auto arc = [](int id) {
        return integers({7, id, 1, 1, 1, 1, 2}) + '\n' + reals(2, {0, 0, 1, 1}) + '\n' + kEnd;
    };
    const auto label = [](int id) {
        return integers({id, 1}) + reals(2, {1, 1}) + '\n' + reals(2, {1, 1, 1, 1}) + '\n' +
               integers({-1, 0}) + reals(2, {0, 0}) + '\n';
    };
    const auto group = [](const std::string& name, const std::string& records) {
        return name + '\n' + records + kEnd + "JABBERWOCKY\n";
    };
    const auto link = [](int x) { return reals(2, {double(x), 0, 0, 0}) + "\nEND OF LINK DATA\n"; };
    const auto regions = [](int arc) {
        return "A\n" + polygon(arc) + kEndOfPolygons + "JABBERWOCKY\n";
    };
    static const std::vector<Case> cases = {
        {"ARC", arc(1), arc(2), "arc", "userId", {1, 2}},
        {"LAB", label(1), label(2), "label", "userId", {1, 2}},
        {"CNT",
         integers({0}) + reals(2, {1, 1}) + '\n' + kEnd,
         integers({0}) + reals(2, {2, 1}) + '\n' + kEnd,
         "centroid",
         "x",
         {1.0, 2.0}},
        {"LNK", link(1), link(2), "link", "from", {{1.0, 0.0}, {2.0, 0.0}}},
        {"PAL",
         polygon(1) + kEndOfPolygons,
         polygon(2) + kEndOfPolygons,
         "polygon",
         "arcs",
         {{{1, 1, 1}}, {{2, 1, 1}}}},
        {"TX7",
         group("A", annotation(1)),
         group("A", annotation(2)),
         "annotation",
         "userId",
         {1, 2}},
        {"RXP",
         group("A", integers({1, 1}) + '\n'),
         group("B", integers({2, 2}) + '\n'),
         "regionPair",
         "subclass",
         {"A", "B"}},
        {"RPL", regions(1), regions(2), "region", "arcs", {{{1, 1, 1}}, {{2, 1, 1}}}},
        {"TOL",
         integers({1, 1}) + reals(2, {1}) + '\n' + integers({2, 1}) + reals(2, {1}) + '\n' + kEnd,
         integers({3, 1}) + reals(2, {1}) + '\n' + kEnd,
         "tolerance",
         "column1",
         {3}},
        {"ADP",
         "ONE              1\nTWO              2\n!!!!!!!!        -1\n",
         "THREE            3\n!!!!!!!!        -1\n",
         "addressText",
         "text",
         {"THREE"}},
        {"ADP",
         "ONE              1\n!!!!!!!!        -1\n",
         "        -1!!!!!!!!\n",
         "addressText",
         "text",
         {}},
        {"ADI",
         integers({4}) + "\n         1     1     11\n" + integers({0}) + '\n' + kEnd,
         integers({4}) + "\n         2     2     22\n" + kEnd,
         "addressIntegers",
         "entries",
         {{{2, 2, 2, 2}}}},
        {"LOG", "one\n~\nmore\n~\nEOL\n", "two\n~\nEOL\n", "log", "lines", {{"two"}}},
        {"PRJ", "one\n~\nEOP\n", "EOP\n", "projection", "lines", {json::array()}},
        {"MTD", "1one\nEOD\n", "1two\nEOD\n", "metadata", "lines", {{"one"}}},
        {"IFO",
         table("S.A", 1) + table("S.B", 1) + "EOI\n",
         table("S.A", 2) + "EOI\n",
         "table",
         "recordCount",
         {1, 2}},
    };
    return cases;
}

TEST_F(RepeatedSections, OfCoveragesGoOnOrBeginAnew) {
    for (const Case& each : casesOfCoverages()) {
        const std::string header = each.code + std::string("  2\n");
        const std::string name = std::string(each.code) + std::to_string(each.kept.size());
        given("EXP  0 X\nSIN  2\nEOX\n" + header + each.first + header + each.second + "EOS\n");
        ASSERT_EQ(import(name), 1) << each.code;
        EXPECT_EQ(complaints(), std::vector<std::string>()) << each.code;
        std::vector<json> kept;
        for (const json& record : records(each.className, name)) kept.push_back(record[each.key]);
        EXPECT_EQ(kept, each.kept) << each.code;
    }
    // Asked for after the first was built.
    const Case& labels = casesOfCoverages()[1];
    given("EXP  0 X\nARC  2\n" + casesOfCoverages()[0].first +
          "SIN  2\n*    ARCS\nEOX\nIFO  2\nEOI\n" + "LAB  2\n" + labels.first +
          "SIN  2\n*  POINTS\nEOX\nIFO  2\nEOI\nEOS\n");
    ASSERT_EQ(import("INDEXED"), 1);
    EXPECT_TRUE(std::filesystem::exists(path("INDEXED/arc.idx")));
    EXPECT_TRUE(std::filesystem::exists(path("INDEXED/lab.idx")));
}

TEST_F(RepeatedSections, OfOtherKindsAreRefusedOrEndTheImport) {
    const std::string alone = "IFO  2\n" + table("X.DAT", 0) + "EOI\n";
    given("EXP  0 X\n" + alone + alone + "EOS\n");
    EXPECT_EQ(import("TAB"), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>{"TAB already exists"});

    const std::string older = "IFO  1\n" + table("X.DAT", 0) + "   0\nEOS\n";
    given("EXP  0 X\nARC  1\n" + kEnd + older + older + "LOG  2\nnot read\n~\nEOL\nEOS\n");
    EXPECT_EQ(import("OLDER"), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>{"OLDER.DAT already exists"});
    // The end mark of the section that is left is one of the file.
    EXPECT_TRUE(records("log", "OLDER").empty());

    const std::string grid = "GRD  2\n" + integers({1, 1}) + " 1 0.00000000000000E+00\n" +
                             reals(3, {1, 1}) + '\n' + reals(3, {0, 0}) + '\n' + reals(3, {1, 1}) +
                             '\n' + "             5\nEOG\n";
    given("EXP  0 X\n" + grid + "LOG  2\none\n~\nEOL\n" + grid + "LOG  2\ntwo\n~\nEOL\nEOS\n");
    EXPECT_EQ(import("GRID"), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>{"Unable to create " + path("GRID") + "."});
    EXPECT_EQ(records("log", "GRID").at(0)["lines"], json({"two"}));

    given("EXP  0 X\nSTK  2\n" + integers({0, 0}) + "\nEOK\nSTK  2\n" + integers({0, 0}) +
          "\nEOK\nEOS\n");
    EXPECT_EQ(import("STACK"), 0);
    EXPECT_EQ(complaints().at(0), "Unable to create stack " + path("STACK") + ".");

    const std::string taken = path("SET") + " already exists";
    given("EXP  0 X\nCS7  2\nEOS\nCS7  2\nEOS\nCSH  2\nEOS\nEOS\n");
    EXPECT_EQ(import("SET"), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>{taken});
    std::filesystem::remove(path("SET"));
    given("EXP  0 X\nCS7  2\nEOS\nCSH  2\nEOS\nEOS\n");
    EXPECT_EQ(import("SET"), 0);
    EXPECT_EQ(complaints(), (std::vector<std::string>{taken, "Error in importing"}));
}

TEST_F(RepeatedSections, OfSurfacesTakeThePlaceOfTheFirst) {
    const auto environment = [](int nodes) {
        return "ENV  2\n" + integers({nodes, 1, 1}) + "0\n" + integers({nodes, 1, 0}) + "\n\n" +
               reals(2, {0, 1}) + '\n' + reals(2, {0, 0, 1, 1}) + '\n' + reals(2, {0, 0, 6.1}) +
               '\n' + kEnd;
    };
    const auto nodes = [](std::vector<double> z) {
        std::string text = "NZ   2\n";
        for (const double each : z) text += reals(2, {each});
        return text + '\n' + kEnd;
    };
    const auto mask = [](const std::string& bits) {
        return "TMK  2\n" + integers({int(bits.size()), 1}) + '\n' + bits + '\n' + kEnd;
    };
    given("EXP  0 X\n" + environment(3) + nodes({1, 2, 3}) + mask("1111") + environment(2) +
          nodes({4, 5}) + mask("0") + "EOS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(complaints(), std::vector<std::string>());
    const auto found = records("tinNode");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[1]["z"], 5.0);
    EXPECT_EQ(records("tinMask").at(0)["bits"].get<std::string>().find('1'), std::string::npos);
}

}  // namespace
}  // namespace intake::testing
