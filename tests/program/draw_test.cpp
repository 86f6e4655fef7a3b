#include <algorithm>
#include <filesystem>
#include <map>

#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

// Pictures as text: the elements by name, where each ends and none is left open.
using Elements = std::map<std::string, int>;

Elements elementsOf(const std::string& svg) {
    Elements elements;
    std::vector<std::string> open;
    std::size_t place = svg.find("?>") + 2;
    while ((place = svg.find('<', place)) != std::string::npos) {
        const std::size_t end = svg.find('>', place);
        EXPECT_NE(end, std::string::npos);
        const std::string tag = svg.substr(place + 1, end - place - 1);
        EXPECT_EQ(std::count(tag.begin(), tag.end(), '"') % 2, 0) << tag;
        place = end;
        if (tag[0] == '/') {
            EXPECT_TRUE(!open.empty() && open.back() == tag.substr(1)) << tag;
            if (!open.empty()) open.pop_back();
            continue;
        }
        const std::string name = tag.substr(0, tag.find(' '));
        ++elements[name];
        if (tag.back() != '/') open.push_back(name);
    }
    EXPECT_TRUE(open.empty());
    EXPECT_EQ(svg.find("nan"), std::string::npos);
    EXPECT_EQ(svg.find("inf"), std::string::npos);
    return elements;
}

constexpr char kPlot[] =
    "PLT  2\nTitle\n 8 0.00000E+00 4.00000E+00\n 9 0.00000E+00 2.00000E+00\n"
    " 0         3\n 1 1.00000E+00 1.00000E+00\n 2 3.00000E+00 1.00000E+00\n"
    " 3 1.00000E+00 1.50000E+00\n"
    "-8A<B & C \n-4\"D\">\n"
    "11 0.00000E+00 0.00000E+00\n11 1.00000E+00 0.00000E+00\n11 1.00000E+00 1.00000E+00\n"
    "12 0.00000E+00 0.00000E+00\n 3         NaN 1.50000E+00\n 5 0.00000E+00 0.00000E+00\n"
    " 3 2.00000E+00 1.50000E+00\nEOP\n";
constexpr char kClose[] =
    "        -1         0         0         0         0         0         0\n";

struct Case {
    const char* name;
    std::string lines;
    Elements elements;  // beside the page and its ground
};

class Draw : public ProgramTest {
  protected:
    std::string drawn(const std::string& dataset) const {
        const Outcome outcome = run({"draw", "@" + dataset, "@" + dataset + ".svg"});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return fileBytes(path(dataset + ".svg"));
    }
};

TEST_F(Draw, EveryKindsPictureHasWhatItsRecordsSay) {
    const std::string close = kClose;
    const std::string tables = "\n\n\n\n\n\n";
    const Case cases[] = {
        {"PLOT", kPlot, {{"path", 2}, {"circle", 1}, {"text", 1}}},
        {"MAP",
         "MAP  2\nA0001.PLT\n" + std::string(kPlot) + "A0002.PLT\n" + kPlot + "EOM\n",
         {{"path", 4}, {"circle", 2}, {"text", 2}}},
        {"COVER",
         "ARC  2\n"
         "         1         1         1         2         3         4         2\n"
         " 0.0000000E+00 0.0000000E+00 4.0000000E+00 4.0000000E+00\n" +
             close +
             "LAB  2\n         1         1 1.0000000E+00 1.0000000E+00\n"
             " 1.0000000E+00 1.0000000E+00 1.0000000E+00 1.0000000E+00\n"
             "        -1         0 0.0000000E+00 0.0000000E+00\n"
             "TX6  2\nNAMES\n"
             "         1         0         2         0         1         1         4\n" +
             tables +
             " 1.0000000E+00\n 2.5000000E-01 0.0000000E+00 0.0000000E+00\n"
             " 1.0000000E+00 1.0000000E+00\n 1.0000000E+00 3.0000000E+00\nR&<D\n" +
             close + "JABBERWOCKY  \n",
         {{"path", 1}, {"circle", 1}, {"text", 1}}},
        {"LATT",
         "LAT  2\n         2         2\n"
         " 0.0000000E+00 0.0000000E+00 1.0000000E+00 1.0000000E+00\n"
         " 1.0000000E+00 4.0000000E+00\n 1.0000000E+00 2.0000000E+00\n"
         " 3.0000000E+00 4.0000000E+00\nEOL\n",
         {{"image", 1}}},
        {"GRID",
         "GRD  2\n         2         2 1-2.14748364700000E+09\n"
         " 1.00000000000000E+00 1.00000000000000E+00\n"
         " 0.00000000000000E+00 0.00000000000000E+00\n"
         " 2.00000000000000E+00 2.00000000000000E+00\n"
         "             1             2\n             3             4\nEOG\n",
         {{"image", 1}}},
        // Two triangles of four nodes; an area and its outline each.
        {"SURFACE",
         "ENV  2\n         4         2         40\n?\n?\n"
         " 0.0000000E+00 0.0000000E+00 1.0000000E+00 1.0000000E+00 0.0000000E+00\n"
         " 0.0000000E+00 0.0000000E+00 1.0000000E+00 4.0000000E+00 6.0000000E+00\n" +
             close +
             "NXY  2\n 0.0000000E+00 0.0000000E+00 1.0000000E+00 0.0000000E+00\n"
             " 1.0000000E+00 1.0000000E+00 0.0000000E+00 1.0000000E+00\n" +
             close + "NZ   2\n 1.0000000E+00 2.0000000E+00 3.0000000E+00 4.0000000E+00\n" + close +
             "NOD  2\n         1         2         3         1         3         4\n" + close,
         {{"path", 4}}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        given("EXP  0 X\n" + each.lines + "EOS\n");
        ASSERT_EQ(import(each.name), 1);
        Elements expected = each.elements;
        expected["svg"] = expected["rect"] = 1;
        EXPECT_EQ(elementsOf(drawn(each.name)), expected);
    }
    EXPECT_NE(drawn("PLOT").find(">A&lt;B &amp; C \"D\"&gt;</text>"), std::string::npos);
    // Upwards, in a picture of four units to a page of 976 pixels.
    EXPECT_NE(drawn("COVER").find("<text x=\"256.00\" y=\"744.00\" font-size=\"61.00\" "
                                  "transform=\"rotate(-90.00 256.00 744.00)\""),
              std::string::npos);
}

TEST_F(Draw, AnAnnotationOfSeveralLinesHasATextForEach) {
    // Lines of two places each, one below the other, by their first characters and points.
    const auto record = [](const std::string& characters, const std::string& points) {
        return "         1         0         4         0         1         2         6\n" +
               characters + "\n\n\n" + points + "\n\n\n 1.0000000E+00\n" +
               " 1.0000000E+00 0.0000000E+00 0.0000000E+00\n"
               " 0.0000000E+00 4.0000000E+00\n 4.0000000E+00 4.0000000E+00\n"
               " 0.0000000E+00 0.0000000E+00\n 4.0000000E+00 0.0000000E+00\nsaltOX\n";
    };
    const std::string parted = "         1         5";
    given("EXP  0 X\nTX6  2\nNAMES\n" + record(parted, "         1         3") +
          record(parted, "         1        -3") + record(parted, "         1         5") +
          record("         1         0", "         1         3") + kClose + "JABBERWOCKY  \nEOS\n");
    ASSERT_EQ(import("LINES"), 1);
    std::string svg = drawn("LINES");
    std::vector<std::string> texts;
    for (std::size_t place = 0; (place = svg.find("<text", place)) != std::string::npos;) {
        const std::size_t end = svg.find("</text>", place);
        const std::string text = svg.substr(place, end - place);
        texts.push_back(text.substr(6, text.find(" font") - 6) + text.substr(text.rfind('>')));
        place = end;
    }
    const std::string top = "x=\"12.00\" y=\"12.00\">";
    const std::string bottom = "x=\"12.00\" y=\"988.00\">";
    EXPECT_EQ(texts, (std::vector<std::string>{top + "salt", bottom + "OX", top + "salt",
                                               top + "saltOX", top + "saltOX"}));
}

TEST_F(Draw, AStackIsItsFirstGridAndPngIsOne) {
    ASSERT_EQ(run({"import", INTAKE_SOURCE_DIR "/samples/jkstk.e00", "@STACK"}).status, 0);
    ASSERT_EQ(run({"draw", "@JKA", "@JKA.svg"}).status, 0);
    EXPECT_EQ(drawn("STACK"), fileBytes(path("JKA.svg")));
    ASSERT_EQ(run({"draw", "@STACK", "@STACK.png"}).status, 0);
    EXPECT_EQ(fileBytes(path("STACK.png")).substr(0, 8), "\x89PNG\r\n\x1A\n");
}

// A square with a hole, polygon 2, beside another, polygon 3, whose arcs run around them.
constexpr char kPolygons[] =
    "EXP  0 X\nARC  2\n"
    "         1         1         1         1         2         1         5\n"
    " 0.0000000E+00 0.0000000E+00 0.0000000E+00 4.0000000E+00\n"
    " 4.0000000E+00 4.0000000E+00 4.0000000E+00 0.0000000E+00\n"
    " 0.0000000E+00 0.0000000E+00\n"
    "         2         2         2         2         1         2         4\n"
    " 1.0000000E+00 1.0000000E+00 1.0000000E+00 2.0000000E+00\n"
    " 2.0000000E+00 2.0000000E+00 1.0000000E+00 1.0000000E+00\n"
    "         3         3         3         3         3         1         4\n"
    " 5.0000000E+00 0.0000000E+00 5.0000000E+00 4.0000000E+00\n"
    " 8.0000000E+00 0.0000000E+00 5.0000000E+00 0.0000000E+00\n";
// A table of the polygons: a name, and a number kept as text. The first record is of the outside.
std::string tableOf(const std::vector<std::string>& records) {
    char line[100];
    std::snprintf(line, sizeof line, "%-32s  %4d%4d%4d%10d\n", "DS.PAT", 2, 2, 0,
                  static_cast<int>(records.size()));
    std::string text = "IFO  2\n" + std::string(line);
    for (const auto& [name, start, type] : {std::tuple("NAME", 1, 2), {"SIZE", 9, 3}}) {
        std::snprintf(line, sizeof line, "%-16s%3d-1%4d*-1%4d%2d%2d*-1  -1  -1-1%-16s%4d-\n", name,
                      8, start, 8, -1, type, "", start / 8 + 1);
        text += line;
    }
    for (const std::string& each : records) text += each + '\n';
    return text + "EOI\n";
}

TEST_F(Draw, PolygonsAreFilledAndColouredByAnItem) {
    const std::string projection =
        "PRJ  2\nProjection    UTM\n~\nZone          31\n~\nDatum         WGS84\n~\n"
        "Units         METERS\n~\nSpheroid      WGS84\n~\nParameters\n~\nEOP\n";
    given(kPolygons + std::string(kClose) + projection +
          tableOf({"outside         ", "wood           7", "a<b             "}) + "EOS\n");
    ASSERT_EQ(import("DS"), 1);
    const std::string plain = drawn("DS");
    // The hole is a second ring of one path; a map of eight metres has a bar of one.
    const std::size_t filled = plain.find("Z\" fill-rule=\"evenodd\"");
    const std::string ringed = plain.substr(plain.rfind('<', filled));
    const std::string rings = ringed.substr(0, ringed.find("fill-rule"));
    EXPECT_EQ(std::ranges::count(rings, 'M'), 2) << rings;
    EXPECT_EQ(elementsOf(plain), (Elements{{"svg", 1}, {"rect", 1}, {"path", 7}, {"text", 1}}));
    EXPECT_NE(plain.find(">1 m</text>"), std::string::npos);
    const auto by = [&](const std::string& item) {
        const Outcome outcome = run({"draw", "@DS", "@by.svg", "--colour-by", item});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        std::string texts;
        const std::string svg = fileBytes(path("by.svg"));
        for (std::size_t place = 0; (place = svg.find("</text>", place + 1)) != svg.npos;) {
            const std::size_t start = svg.rfind('>', place) + 1;
            texts += svg.substr(start, place - start) + '|';
        }
        return texts;
    };
    EXPECT_EQ(by("NAME"), "1 m|NAME|a&lt;b|wood|");
    EXPECT_EQ(by("SIZE"), "1 m|SIZE|7|no value|");
    const Outcome missing = run({"draw", "@DS", "@by.svg", "--colour-by", "size"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_NE(missing.errors.find("has no item size; there are NAME, SIZE"), std::string::npos);
    // Records of polygons that are not there count too: twenty names, twenty sizes.
    std::vector<std::string> records = {"outside         "};
    for (int each = 0; each < 20; ++each) {
        records.push_back(std::string("name") + static_cast<char>('a' + each) + "     " +
                          std::to_string(100 + each * each));
        records.back().insert(5, 16 - records.back().size(), ' ');
    }
    std::filesystem::remove_all(path("DS"));
    std::filesystem::remove_all(path("info"));
    given(kPolygons + std::string(kClose) + tableOf(records) + "EOS\n");
    ASSERT_EQ(import("DS"), 1);
    EXPECT_EQ(by("NAME"), "NAME|namea|nameb|namec|named|namee|namef|nameg|nameh|namei|all others|");
    EXPECT_EQ(by("SIZE"),
              "SIZE|100 \u2013 104|109 \u2013 125|136 \u2013 164|181 \u2013 221|244 \u2013 296|"
              "325 \u2013 389|424 \u2013 461|");
}

TEST_F(Draw, SymbolSetsAreTablesWithTheColoursThatTheyTell) {
    given(
        "EXP  0 X\nCSH  2\n         1         2         3         4         5         6\n"
        " 7.0000000E+00 8.0000000E+00 9.5000000E+00\n"
        " 1.0000000E+01 1.1000000E+01 1.2000000E+01-1.3000000E+01\nEOS\nEOS\n");
    ASSERT_EQ(import("SHADES"), 1);
    const auto sheet = [&](const std::string& kind) {
        EXPECT_EQ(run({"draw", "@SHADES", "@S.svg", "--kind", kind}).status, 0);
        return fileBytes(path("S.svg"));
    };
    const std::string shades = sheet("Shadeset File");
    EXPECT_EQ(elementsOf(shades),
              (Elements{{"svg", 1}, {"rect", 1}, {"path", 3}, {"text", 1 + 2 * 13}}));
    EXPECT_NE(shades.find(">9.5</text>"), std::string::npos);
    EXPECT_NE(shades.find("Z\" fill=\"#008b8b\""), std::string::npos);
    EXPECT_EQ(elementsOf(sheet("Lineset File"))["text"], 1 + 2 * 10);
}

TEST_F(Draw, WhatHasNoPictureIsRefusedWithALine) {
    given("EXP  0 X\nASC  2\nfirst line\nEOA\nEOS\n");
    ASSERT_EQ(import("WORDS"), 1);
    const Outcome kind = run({"draw", "@WORDS", "@M.svg", "--kind", "Text File"});
    EXPECT_EQ(kind.status, 1);
    EXPECT_EQ(kind.errors, "intake: " + path("WORDS") + ": a Text File has no picture\n");
    const Outcome ending = run({"draw", "@WORDS", "@M.gif", "--kind", "Text File"});
    EXPECT_EQ(ending.status, 1);
    EXPECT_EQ(ending.errors,
              "intake: " + path("M.gif") + ": the name of a picture ends in .svg or .png\n");
    EXPECT_FALSE(std::filesystem::exists(path("M.svg")));
}

}  // namespace
}  // namespace intake::testing
