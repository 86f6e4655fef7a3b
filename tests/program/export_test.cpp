// Datasets in open formats, looked at as texts: programs of others read the rest (tests/clients).
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "formats/formats.h"
#include "tests/support/columns.h"
#include "tests/support/program_test.h"

namespace intake::testing {
namespace {

const std::string kEnd = integers({-1, 0, 0, 0, 0, 0, 0}) + '\n';

std::string arc(int number, int left, int right, std::initializer_list<double> places) {
    std::string text =
        integers({number, number * 10, 1, 2, left, right, static_cast<int>(places.size() / 2)}) +
        '\n';
    for (const double* at = places.begin(); at != places.end(); at += 2) {
        text += reals(3, {at[0], at[1]}) + '\n';
    }
    return text;
}

// Two squares side by side, polygons 2 and 3. The arcs' numbers are not those of their records.
const std::string kArcs = "EXP  0 X\nARC  3\n" + arc(10, 2, 3, {1, 0, 1, 1}) +
                          arc(20, 2, 1, {1, 1, 0, 1, 0, 0, 1, 0}) +
                          arc(30, 3, 1, {1, 0, 2, 0, 2, 1, 1, 1}) + kEnd + reals(3, {0, 0}) + '\n';

std::string polygon(std::initializer_list<int> arcs) {
    std::string text = integers({static_cast<int>(arcs.size())}) + reals(3, {0, 0}) + '\n' +
                       reals(3, {2, 1}) + '\n';
    std::string line;
    for (const int each : arcs) {
        line += integers({each, 1, 1});
        if (line.size() == 60) text += std::exchange(line, {}) + '\n';
    }
    return text + (line.empty() ? "" : line + '\n');
}
std::string polygons(const std::string& last) {
    return "PAL  3\n" + polygon({20, 30}) + polygon({-10, -20}) + last + kEnd + reals(3, {0, 0}) +
           '\n';
}

std::string item(const char* name, int width, int start, int type, int number) {
    char line[100];
    std::snprintf(line, sizeof line, "%-16s%3d-1%4d*-1%4d%2d%2d*-1  -1  -1-1%-16s%4d-\n", name,
                  width, start, width, -1, type, "", number);
    return line;
}
// A table of the polygons, whose columns are a text, a date, digits, and the text's front again.
std::string table(const std::string& name, const std::vector<std::string>& records) {
    char line[100];
    std::snprintf(line, sizeof line, "%-32s%2s%4d%4d%4d%10d\n", name.c_str(), "", 3, 4, 0,
                  static_cast<int>(records.size()));
    std::string text = "IFO  2\n" + (line + item("NAME", 8, 1, 2, 1)) + item("MADE", 8, 9, 1, 2) +
                       item("number", 4, 17, 3, 3) + item("FRONT", 2, 1, 2, -1);
    for (const std::string& each : records) text += each + '\n';
    return text + "EOI\n";
}
const std::string kTable =
    table("DS.PAT", {"outside 19991231   0", "west    20000101   7", "east    20000102   8"});
const std::string kProjection =
    "PRJ  3\nProjection    GEOGRAPHIC\n~\nDatum         WGS84\n~\nUnits         DD\n~\n"
    "Spheroid      WGS84\n~\nParameters\n~\nEOP\n";

class Export : public ProgramTest {
  protected:
    void imported(const std::string& text) {
        given(text + "EOS\n");
        ASSERT_EQ(import(), 1);
    }
    // The features of a layer out of an export to GeoJSON.
    std::vector<json> features(const std::string& layer, std::vector<std::string> options = {}) {
        std::vector<std::string> words = {"export", "--as-is", "--force", "--format", "geojson",
                                          "@DS",    "@out",    "--layer", layer};
        words.insert(words.end(), options.begin(), options.end());
        last_ = run(words);
        const std::string file = path("out/" + layer + ".geojson");
        if (!std::filesystem::exists(file)) return {};
        return json::parse(fileBytes(file))["features"].get<std::vector<json>>();
    }
    bool leftNothing(const std::string& name) const {
        for (const auto& each : std::filesystem::directory_iterator(path("."))) {
            if (each.path().filename().string().starts_with(name)) return false;
        }
        return true;
    }
    Outcome last_{};
};

json coordinates(const char* text) { return json::parse(text); }

TEST_F(Export, PolygonsComeFromTheirListsOrFromWhatLiesBesideTheArcs) {
    for (const std::string& lists : {std::string(), polygons(polygon({-30, 10}))}) {
        std::filesystem::remove_all(path("DS"));
        std::filesystem::remove_all(path("info"));
        imported(kArcs + lists + kTable);
        const auto found = features("polygons");
        EXPECT_EQ(last_.status, 0) << last_.errors;
        ASSERT_EQ(found.size(), 2U);
        EXPECT_EQ(found[0]["id"], 2);
        // Counter-clockwise, closed, wherever they begin.
        for (const json& each : found) {
            const json& ring = each["geometry"]["coordinates"][0][0];
            ASSERT_EQ(ring.size(), 5U);
            EXPECT_EQ(ring.front(), ring.back());
            double area = 0;
            for (std::size_t at = 1; at < ring.size(); ++at) {
                area += ring[at - 1][0].get<double>() * ring[at][1].get<double>() -
                        ring[at][0].get<double>() * ring[at - 1][1].get<double>();
            }
            EXPECT_EQ(area / 2, 1);
        }
        // By number, and a column of the table that bears the name of one of ours stays.
        const json& west = found[0]["properties"];
        EXPECT_EQ(west["number"], 2);
        EXPECT_EQ(west["NAME"], "west");
        EXPECT_EQ(west["MADE"], "2000-01-01");
        EXPECT_EQ(west["FRONT"], "we");
        EXPECT_EQ(west.size(), 5U) << west;
    }
}

TEST_F(Export, WhatDoesNotCloseIsKeptAsLinesAndTold) {
    imported(kArcs + polygons(polygon({30}) + polygon({99})));
    EXPECT_EQ(features("unclosed").size(), 1U);
    const auto lines = features("unclosed", {"--layer", "polygons", "--json"});
    EXPECT_EQ(last_.status, 3);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0]["properties"]["number"], 3);
    EXPECT_EQ(lines[0]["geometry"]["coordinates"], coordinates("[[1,0],[2,0],[2,1],[1,1]]"));
    const json losses = last_.object()["losses"];
    ASSERT_EQ(losses.size(), 2U) << losses;
    EXPECT_EQ(losses[1]["reason"], "names an arc that is not there");
    EXPECT_EQ(losses[1]["examples"], "polygon 4, arc 99");
}

TEST_F(Export, ColumnsSayWhatTheirRecordsSay) {
    imported(kArcs +
             table("DS.PAT",
                   {"a\xC3\xA9     noneyet    7", "b       20000101   x", "c                   "}) +
             table("DS.BND", {"caf\xE9 \x81  20000101   7"}));
    auto rows = features("DS.PAT");
    EXPECT_EQ(last_.status, 0) << last_.errors;
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0]["properties"]["NAME"], "a\xC3\xA9");
    EXPECT_EQ(rows[0]["properties"]["MADE"], "noneyet");
    EXPECT_EQ(rows[1]["properties"]["number"], "   x");
    EXPECT_TRUE(rows[2]["geometry"].is_null());
    rows = features("DS.BND", {"--no-redefined"});
    EXPECT_EQ(last_.status, 3);
    EXPECT_EQ(rows[0]["properties"]["NAME"], "caf\xC3\xA9 \xEF\xBF\xBD");
    EXPECT_EQ(rows[0]["properties"]["number"], 7);
    EXPECT_FALSE(rows[0]["properties"].contains("FRONT"));
    EXPECT_NE(last_.errors.find("a byte is no character of windows-1252"), std::string::npos);
    EXPECT_EQ(features("DS.BND", {"--encoding", "latin1"})[0]["properties"]["NAME"],
              "caf\xC3\xA9 \xC2\x81");
}

TEST_F(Export, ARectangleChoosesFeatures) {
    imported(kArcs);
    EXPECT_EQ(features("arcs", {"--where-within", "1.5,0,9,9"}).size(), 1U);
    EXPECT_EQ(features("polygons", {"--where-within", "-9,-9,0.5,0.5"}).size(), 1U);
    EXPECT_EQ(features("nodes", {"--where-within", "1,1,1,1"}).size(), 1U);
    EXPECT_TRUE(features("arcs", {"--where-within", "5,5,9,9"}).empty());
    EXPECT_EQ(run({"export", "@DS", "@o.gpkg", "--where-within", "1,2,3"}).status, 2);
}

TEST_F(Export, TheReferenceSystemIsReadStatedOrMissed) {
    imported(kArcs + kProjection);
    EXPECT_EQ(run({"export", "@DS", "@known.geojson"}).status, 0);
    EXPECT_NE(run({"show", "@DS"}).output.find("WGS 84"), std::string::npos);
    const Outcome stated = run({"export", "@DS", "@utm.geojson", "--crs", "EPSG:32631"});
    EXPECT_EQ(stated.status, 0) << stated.errors;
    EXPECT_EQ(run({"export", "@DS", "@o.gpkg", "--crs", "EPSG:nonsense"}).status, 1);
    given(kArcs + "EOS\n");
    ASSERT_EQ(import("BARE"), 1);
    const Outcome bare = run({"export", "@BARE", "@bare.geojson"});
    EXPECT_EQ(bare.status, 1);
    EXPECT_NE(bare.errors.find("--as-is"), std::string::npos) << bare.errors;
    EXPECT_TRUE(leftNothing("bare"));
}

TEST_F(Export, FailuresAreToldAndLeaveNothing) {
    imported(kArcs);
    writeFile(path("there.gpkg"), "mine");
    const struct {
        std::vector<std::string> words;
        const char* told;
    } cases[] = {
        {{"export", "@NONE", "@o.gpkg"}, "no dataset of this name"},
        {{"export", "@DS", "@o.xyz"}, "no format has this ending"},
        {{"export", "@DS", "@there.gpkg"}, "there.gpkg"},
        {{"export", "@DS", "@o.gpkg", "--layer", "ways"}, "has no layer ways; there are arcs"},
        {{"export", "@DS", "@o.gpkg", "--encoding", "klingon"}, "no encoding"},
        {{"export", "@DS", "@nowhere/o.gpkg"}, "nowhere/o.gpkg"},
    };
    for (const auto& each : cases) {
        const Outcome outcome = run(each.words);
        EXPECT_EQ(outcome.status, 1) << each.told;
        EXPECT_NE(outcome.errors.find(each.told), std::string::npos) << outcome.errors;
        EXPECT_TRUE(leftNothing("o."));
    }
    EXPECT_EQ(fileBytes(path("there.gpkg")), "mine");
    EXPECT_EQ(run({"export", "@DS", "@there.gpkg", "--force"}).status, 0);
    EXPECT_TRUE(fileBytes(path("there.gpkg")).starts_with("SQLite format 3"));
}

TEST_F(Export, ADiskThatIsFullIsToldOnceAndNothingIsLeft) {
    imported(kArcs + kProjection);
    for (const char* output : {"o.gpkg", "o.geojson", "o.csv"}) {
        const pid_t child = ::fork();
        if (child == 0) {
            const rlimit limit{100, 100};
            std::signal(SIGXFSZ, SIG_IGN);
            ::setrlimit(RLIMIT_FSIZE, &limit);
            const Outcome full =
                run({"export", "@DS", path(output), "--format",
                     std::string(formats::formatOf(output)->name), "--layer", "arcs"});
            const bool told = full.errors == "intake: " + path(output) + ": File too large\n";
            ::_exit(full.status == 1 && told ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0) << output;
        EXPECT_TRUE(leftNothing("o."));
    }
}

TEST_F(Export, GeometriesGoIntoTablesAsTextWhereThatIsAskedFor) {
    imported(kArcs);
    EXPECT_EQ(run({"export", "@DS", "@t", "--format", "csv", "--wkt"}).status, 0);
    const std::string arcs = fileBytes(path("t/arcs.csv"));
    EXPECT_NE(arcs.find("\r\n1,10,100,1,2,2,3,\"LINESTRING (1 0, 1 1)\"\r\n"), std::string::npos)
        << arcs;
    EXPECT_NE(fileBytes(path("t/polygons.csv")).find("MULTIPOLYGON (((1"), std::string::npos);
    const Outcome bare = run({"export", "@DS", "@b", "--format", "csv", "--layer", "nodes"});
    EXPECT_EQ(fileBytes(path("b/nodes.csv")), "fid,number\r\n1,1\r\n2,2\r\n");
    EXPECT_NE(bare.errors.find("--wkt"), std::string::npos) << bare.errors;
}

TEST_F(Export, ConvertGoesFromTheFileAndLeavesNoWorkspace) {
    ::setenv("TMPDIR", path("").c_str(), 1);
    given(kArcs + "EOS\n", "roads.e00");
    EXPECT_EQ(run({"convert", "--quiet", "@roads.e00", "@roads.gpkg"}).status, 0);
    EXPECT_TRUE(std::filesystem::exists(path("roads.gpkg")));
    given(kArcs + "LAB  3\nno label at all\n", "cut.e00");
    EXPECT_EQ(run({"convert", "--quiet", "@cut.e00", "@cut.gpkg"}).status, 1);
    EXPECT_FALSE(std::filesystem::exists(path("cut.gpkg")));
    EXPECT_EQ(run({"convert", "--quiet", "@cut.e00", "@cut.gpkg", "--partial"}).status, 1);
    EXPECT_TRUE(std::filesystem::exists(path("cut.gpkg")));
    EXPECT_EQ(run({"convert", "--quiet", "@none.e00", "@none.gpkg"}).status, 1);
    ::unsetenv("TMPDIR");
    EXPECT_TRUE(leftNothing("intake-"));
}

TEST_F(Export, ListsThatNameOneArcAgainAndAgainAreBounded) {
    constexpr int kSide = 2500;
    std::string ring = integers({1, 1, 1, 1, 2, 1, 4 * kSide + 1}) + '\n';
    for (int at = 0; at <= 4 * kSide; ++at) {
        const int along = at % kSide;
        const int side = at / kSide % 4;
        const double places[][2] = {{0.0 + along, 0},
                                    {kSide, 0.0 + along},
                                    {0.0 + kSide - along, kSide},
                                    {0, 0.0 + kSide - along}};
        ring += reals(3, {places[side][0], places[side][1]}) + '\n';
    }
    std::string lists;
    for (int each = 0; each < 300; ++each) lists += polygon({-1});
    given("EXP  0 X\nARC  3\n" + ring + kEnd + reals(3, {0, 0}) + "\nPAL  3\n" + polygon({1}) +
          lists + kEnd + reals(3, {0, 0}) + "\nEOS\n");
    ASSERT_EQ(import(), 1);
    const auto found = features("polygons");
    EXPECT_EQ(last_.status, 3);
    EXPECT_EQ(found.size(), 300U);
    EXPECT_FALSE(found[0]["geometry"].is_null());
    EXPECT_TRUE(found[299]["geometry"].is_null());
    EXPECT_NE(last_.errors.find("named too often"), std::string::npos) << last_.errors;
}

}  // namespace
}  // namespace intake::testing
