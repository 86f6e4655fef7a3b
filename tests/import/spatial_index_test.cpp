#include <cmath>
#include <map>
#include <random>

#include "app/intake/show/within.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "tests/support/columns.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

// The node table of an index, worked out anew from the boxes of its entries.
class Rebuild {
  public:
    Rebuild(const std::vector<uint32_t>& boxes, int depth) : depth_(depth) {
        for (const uint32_t box : boxes) ++counts_[place(box)];
        for (int level = depth - 2; level >= 1; --level) {
            for (int node = 1 << level; node < 2 << level; ++node) fold(node);
        }
    }
    std::map<int, int> occupied() const {
        std::map<int, int> nodes;
        for (const auto& [node, count] : counts_) {
            if (count > 0) nodes[node] = count;
        }
        return nodes;
    }

  private:
    int place(uint32_t box) const {
        const int low[] = {static_cast<int>(box >> 24), static_cast<int>(box >> 16 & 255U)};
        const int high[] = {static_cast<int>(box >> 8 & 255U), static_cast<int>(box & 255U)};
        int from[] = {0, 0};
        int width[] = {256, 256};
        int node = 1;
        for (int axis = 0; node < 1 << (depth_ - 1); axis = 1 - axis) {
            width[axis] /= 2;
            const int middle = from[axis] + width[axis];
            if (low[axis] <= middle && high[axis] > middle) break;
            if (low[axis] > middle) from[axis] = middle;
            node = 2 * node + (low[axis] > middle ? 0 : 1);
        }
        return node;
    }
    int count(int node) const { return counts_.contains(node) ? counts_.at(node) : 0; }
    void fold(int node) {
        const int children[] = {count(2 * node), count(2 * node + 1)};
        const int sum = std::max(children[0], 0) + std::max(children[1], 0);
        const bool deep = count(4 * node) != 0 || count(4 * node + 1) != 0 ||
                          count(4 * node + 2) != 0 || count(4 * node + 3) != 0;
        const bool marked = children[0] < 0 || children[1] < 0;
        if (count(node) == 0 && (marked || deep || sum > 8)) {
            counts_[node] = -1;
        } else if (count(node) < 8 && count(node) + sum <= 8 && !deep) {
            counts_[node] += sum;
            counts_.erase(2 * node);
            counts_.erase(2 * node + 1);
        }
    }

    int depth_;
    std::map<int, int> counts_;
};

// Indexes are built behind each table.
constexpr char kTable[] =
    "IFO  2\nX.TMP                                1   1   4         0\n"
    "N                 4-1   14-1  11-1 50-1  -1  -1-1                   1-\n"
    "EOI\nEOS\n";

class SpatialIndex : public ImportTest {
  protected:
    // A coverage of labels at places, all kinds of index asked for by SIN's lines.
    void givenLabels(const std::vector<std::array<double, 2>>& places, const std::string& keys) {
        std::string text = "EXP  0 X\nLAB  2\n";
        char line[100];
        for (const auto& [x, y] : places) {
            std::snprintf(line, sizeof line, "%10d%10d%14.7E%14.7E\n", 1, 0, x, y);
            text += line;
            std::snprintf(line, sizeof line, "%14.7E%14.7E%14.7E%14.7E\n", x, y, x, y);
            text += line;
        }
        given(text + "        -1         0 0.0000000E+00 0.0000000E+00\nSIN  2\n" + keys + "EOX\n" +
              kTable);
    }

    // Every record is in one entry, blocks and nodes agree, and so does the rebuild.
    void expectWhole(const json& index) {
        std::vector<uint32_t> boxes;
        std::map<int, int> inBlocks;
        std::vector<int> seen(index["recordCount"].get<std::size_t>());
        for (const json& block : records("indexBlock")) {
            if (block["kind"] != index["kind"] || block["subclass"] != index["subclass"]) continue;
            inBlocks[block["number"]] = static_cast<int>(block["entries"].size());
            for (const json& entry : block["entries"]) {
                boxes.push_back(entry[0]);
                ++seen.at(entry[1].get<std::size_t>() - 1);
            }
        }
        EXPECT_EQ(seen, std::vector<int>(seen.size(), 1));
        std::map<int, int> occupied;
        for (std::size_t node = 0; node < index["nodes"].size(); ++node) {
            int block = index["nodes"][node][0];
            const int count = index["nodes"][node][1];
            if (count == 0) continue;
            occupied[static_cast<int>(node) + 1] = count;
            for (int left = count; left > 0; left -= 100) {
                EXPECT_EQ(inBlocks[block], std::min(left, 100));
                inBlocks.erase(block++);
            }
        }
        EXPECT_TRUE(inBlocks.empty());
        int depth = 17;
        while (depth > 10 && seen.size() <= (std::size_t{4} << depth)) --depth;
        EXPECT_EQ(occupied, Rebuild(boxes, depth).occupied());
    }

    // What is found through the indexes is what a scan finds without them.
    void expectAsScanned(const program::Dataset& coverage, unsigned seed) {
        std::mt19937 random(seed);
        std::vector<datasets::Box> rectangles;
        std::vector<program::Description> answers;
        for (const json& index : records("index")) expectWhole(index);
        const auto extent = records("index")[0]["extent"];
        for (int each = 0; each < 60; ++each) {
            datasets::Box box;
            for (std::size_t axis = 0; axis < 2; ++axis) {
                const double low = extent[axis];
                const double high = extent[axis + 2];
                std::uniform_real_distribution<double> place(low - 1, high + 1);
                const double size = std::ldexp(high - low, -(each % 9));
                box[axis] = place(random);
                box[axis + 2] = box[axis] + size;
            }
            rectangles.push_back(box);
            answers.push_back(program::featuresWithin(coverage, box));
        }
        for (const auto& file : std::filesystem::directory_iterator(coverage.path)) {
            if (file.path().string().find(".idx") != std::string::npos) {
                std::filesystem::remove(file.path());
            }
        }
        for (std::size_t each = 0; each < rectangles.size(); ++each) {
            for (auto& found : answers[each]) {
                EXPECT_EQ(found["by"], "index") << found["class"];
                found["by"] = "scan";
            }
            EXPECT_EQ(program::featuresWithin(coverage, rectangles[each]), answers[each]);
        }
    }
};

TEST_F(SpatialIndex, OfASampleIsWholeAndAnswersAsAScan) {
    given(fileBytes(INTAKE_SOURCE_DIR "/samples/wcr.e00"));
    ASSERT_EQ(import(), 1);
    const auto indexes = records("index");
    EXPECT_EQ(indexes.size(), 3U);
    const program::Dataset coverage{path("DS"), "DS", "Coverage"};
    EXPECT_EQ(program::featuresWithin(coverage, {0, 0, 1, 1})[0]["by"], "index");
    expectAsScanned(coverage, 7);
    EXPECT_THROW(program::featuresWithin({path("DS"), "DS", "Grid"}, {}), std::runtime_error);
    for (const std::string text : {"", "1,2,3", "1,2,3,4,", "1,2,3,x"}) {
        EXPECT_THROW(program::parseRectangle(text), std::runtime_error);
    }
}

TEST_F(SpatialIndex, FoldsSparseNodesAndSplitsFullOnes) {
    std::vector<std::array<double, 2>> places = {{0, 0}, {255, 255}};
    // Three and five in sibling cells far down; more than two blocks in one cell.
    for (int each = 0; each < 8; ++each) places.push_back({each < 3 ? 20.5 : 22.5, 20.5});
    for (int each = 0; each < 201; ++each) places.push_back({200.5, 100.5});
    for (int each = 0; each < 1000; ++each) {
        places.push_back({(each * 37) % 251 + 0.25, (each * 101) % 251 + 0.75});
    }
    givenLabels(places, "*  POINTS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_TRUE(complaints().empty());
    EXPECT_EQ(records("index")[0]["extent"], json::parse("[0.0,0.0,255.0,255.0]"));
    expectAsScanned({path("DS"), "DS", "Coverage"}, 11);
}

// Arcs, polygons, regions and annotation of every number of points, in subclasses, none of which
// gives the index its extent but the arcs.
TEST_F(SpatialIndex, OfEveryKindAnswersAsAScan) {
    std::mt19937 random(5);
    const auto place = [&] { return static_cast<double>(random() % 1000) / 4; };
    const auto box = [&] {
        const double x = place();
        const double y = place();
        return reals(2, {x, y, x + place() / 9, y + place() / 9});
    };
    std::string arcs;
    std::string polygons;
    std::string zones;
    std::string notes;
    for (int each = 1; each <= 150; ++each) {
        arcs += integers({each, each, 0, 0, 0, 0, 2}) + "\n" + box() + "\n";
        polygons += integers({1}) + box() + "\n" + integers({each, 0, 0}) + "\n";
        zones += each % 2 == 0 ? polygons.substr(polygons.size() - 98) : "";
        const int points = each % 5;
        notes += integers({each, 1, points, 0, 1, 1, 3}) + std::string(7, '\n') + reals(2, {0.25}) +
                 "\n" + reals(2, {1.5, 0, 0}) + "\n";
        for (int point = 0; point < points; ++point) notes += reals(2, {place(), place()}) + "\n";
        notes += "abc\n";
        if (each == 70) notes += integers({-1}) + "\nOTHER\n";
    }
    const std::string end = integers({-1, 0, 0, 0, 0, 0, 0}) + "\n";
    given("EXP  0 X\nARC  2\n" + arcs + end + "PAL  2\n" + polygons + end + "RXP  2\nEMPTY\n" +
          integers({1, 1}) + "\n" + end + "JABBERWOCKY\nRPL  2\nZONES\n" + zones + end +
          "JABBERWOCKY\nTX7  2\nNAMES\n" + notes + end +
          "JABBERWOCKY\nSIN  2\n*    ARCS\n*POLYGONS\n*    TEXT\n* REGIONS\nEOX\n" + kTable);
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(complaints(),
              std::vector<std::string>{"Coverage " + path("DS") +
                                       " does not contain region topology for subclass EMPTY"});
    json counts;
    for (const json& index : records("index")) {
        const std::string subclass = index["subclass"];
        counts[index["kind"].get<std::string>() + "/" + subclass] = index["recordCount"];
    }
    EXPECT_EQ(counts, json::parse(R"({"ARCS/":150,"POLYGONS/":150,"REGIONS/ZONES":75,)"
                                  R"("ANNOTATIONS/NAMES":70,"ANNOTATIONS/OTHER":80})"));
    expectAsScanned({path("DS"), "DS", "Coverage"}, 13);
}

// A coverage whose tables would have it indexed anew without end; the last build has all of it.
TEST_F(SpatialIndex, OfManyTableSectionsIsBuiltAFewTimes) {
    std::string tables;
    for (int each = 0; each < 200; ++each) tables += "IFO  2\nEOI\n";
    const std::string label = integers({1, 0}) + reals(2, {2, 3}) + "\n" + reals(2, {2, 3, 2, 3}) +
                              "\n" + integers({-1, 0}) + "\n";
    given("EXP  0 X\nLAB  2\n" + label + "SIN  2\n*  POINTS\n*    ARCS\nEOX\n" + tables +
          "LAB  2\n" + label + "IFO  2\nEOI\nEOS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(records("index")[0]["recordCount"], 2);
    // Two for each build.
    EXPECT_LE(complaints().size(), 50U);
    EXPECT_GE(complaints().size(), 34U);
}

TEST_F(SpatialIndex, OfACoverageOfOnePointHasAScaleAllTheSame) {
    givenLabels({{5, 5}, {5, 5}}, "*  POINTS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(records("indexBlock")[0]["entries"], json::parse("[[257,1],[257,2]]"));
}

TEST_F(SpatialIndex, ThatCannotBeBuiltIsToldAndTheNextOneTried) {
    givenLabels({{1, 2}}, "*  POINTS\n*    ARCS\n*POLYGONS\n*    TEXT\n* REGIONS\n");
    ASSERT_EQ(import(), 1);
    EXPECT_EQ(complaints(), (std::vector<std::string>{
                                "Coverage " + path("DS") + " does not contain arcs",
                                "Error creating spatial index for ARCS",
                                "Coverage " + path("DS") + " does not contain polygon topology",
                                "Error creating spatial index for POLYGONS"}));
    EXPECT_EQ(records("index").size(), 1U);

    // Nothing known is asked for.
    givenLabels({{1, 2}}, "*  LINES\n");
    ASSERT_EQ(import("UNKNOWN"), 1);
    EXPECT_TRUE(records("index", "UNKNOWN").empty());

    givenLabels({}, "*  POINTS\n");
    ASSERT_EQ(import("EMPTY"), 1);
    EXPECT_EQ(complaints(),
              (std::vector<std::string>{"Coverage " + path("EMPTY") + " does not exist.",
                                        "Error creating spatial index for POINTS"}));
}

TEST_F(SpatialIndex, ThatIsDamagedIsScannedOrAsksForNoMoreThanThereIs) {
    std::vector<std::array<double, 2>> places;
    for (int each = 0; each < 300; ++each) places.push_back({each % 17 + 0.5, each % 19 + 0.5});
    givenLabels(places, "*  POINTS\n");
    ASSERT_EQ(import(), 1);
    const program::Dataset coverage{path("DS"), "DS", "Coverage"};
    const std::string stored = path("DS") + "/lab.idx";
    const std::string bytes = fileBytes(stored);
    // Bounds the wrong way round: x from 0.5 to 16.5.
    const std::string low("\x3F\0\0\0", 4);
    const std::string high("\x41\x84\0\0", 4);
    std::string turned = bytes;
    turned.replace(turned.find(low), 4, high);
    turned.replace(turned.rfind(high), 4, low);
    writeFile(stored, turned);
    EXPECT_EQ(program::featuresWithin(coverage, {2, 2, 9, 9})[0]["by"], "scan");
    std::mt19937 random(3);
    for (int each = 0; each < 60; ++each) {
        std::string damaged = bytes;
        damaged[random() % damaged.size()] = static_cast<char>(random());
        if (each % 2 == 0) damaged.resize(random() % damaged.size());
        writeFile(stored, damaged);
        const auto found = program::featuresWithin(coverage, {2, 2, 9, 9})[0];
        EXPECT_LE(found["found"].get<int>(), 300);
        records("index");
        records("indexBlock");
    }
}

}  // namespace
}  // namespace intake::testing
