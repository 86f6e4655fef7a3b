// Areas out of lists of arcs: shapes by hand, hostile lists, random maps and a real one.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <sstream>

#include "tests/support/import_test.h"
#include "topology/arcs_by_polygon.h"
#include "topology/assembler.h"
#include "topology/crossing.h"

namespace topology {
namespace {

class Arcs : public ArcSource {
  public:
    std::map<int32_t, std::vector<Point>> arcs;
    bool vertices(int32_t number, std::span<const double>& pairs) override {
        const auto found = arcs.find(number);
        if (found == arcs.end()) return false;
        pairs = pairsOf(found->second);
        return true;
    }
};

std::string text(std::span<const Point> points) {
    std::ostringstream stream;
    for (const Point& point : points) stream << ' ' << point.x << ',' << point.y;
    return stream.str();
}

// "(ring)(hole) (ring)", then what is left over: "; reason arc: line: line".
std::string text(const Shape& shape) {
    std::string out;
    std::size_t ring = 0;
    for (const uint32_t count : shape.ringCounts) {
        if (!out.empty()) out += ' ';
        for (uint32_t each = 0; each < count; ++each) {
            out += "(" + text(shape.ring(ring++)).substr(1) + ")";
        }
    }
    EXPECT_EQ(ring, shape.rings());
    for (const Shape::Problem& problem : shape.problems) {
        out += "; " + std::string(words(problem.reason)) + " " + std::to_string(problem.arc);
        for (std::size_t line = 0; line < problem.lines; ++line) {
            out += ":" + text(shape.line(problem.firstLine + line));
        }
    }
    return out;
}

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// A map by hand: squares and pieces of squares. Clockwise arcs have the area to their right.
const std::map<int32_t, std::vector<Point>> kArcs = {
    {1, {{0, 0}, {0, 9}, {9, 9}, {9, 0}, {0, 0}}},          // clockwise around all
    {2, {{2, 2}, {6, 2}, {6, 6}, {2, 6}, {2, 2}}},          // counter-clockwise: a hole in it
    {3, {{3, 3}, {3, 5}, {5, 5}, {5, 3}, {3, 3}}},          // clockwise: an island in the hole
    {4, {{6, 6}, {8, 6}, {8, 8}, {6, 8}, {6, 6}}},          // a hole that touches the hole 2
    {5, {{0, 0}, {1, 1}, {1, 2}, {0, 0}}},                  // a hole that touches 1
    {6, {{9, 9}, {9, 12}, {12, 12}, {9, 9}}},               // clockwise, touches 1 from outside
    {7, {{20, 0}, {20, 5}, {25, 5}}},                       // half a square
    {8, {{25, 5}, {25, 0}, {20, 0}}},                       // the other half
    {9, {{25, 5}, {30, 9}, {31, 9}}},                       // a loose end on it
    {10, {{20, 0}, {40, 40}, {40, 0}, {30, 30}, {20, 0}}},  // crosses itself
    {11, {{0, 0}, {5, kNone}, {9, 9}}},
    {12, {{7, 7}}},
    {13, {{0, 0}, {4, 4}}},
    {14, {{4, 4}, {0, 0}}},
    {15, {{1, 1}, {1, 2}, {2, 2}, {2, 1}, {1, 1}}},  // clockwise, directly inside 1
    {16, {{25, 5}, {20, 0}}},                        // parts the square of 7 and 8
};

struct Case {
    const char* what;
    std::vector<int32_t> list;
    std::string expected;
};

TEST(Areas, RingsOfShapesByHand) {
    const std::string all = "(0,0 9,0 9,9 0,9 0,0)";
    const std::string hole = "(2,2 2,6 6,6 6,2 2,2)";
    const std::string island = "(3,3 5,3 5,5 3,5 3,3)";
    const std::string square = "(20,0 25,0 25,5 20,5 20,0)";
    const std::string loose = ": 25,5 30,9 31,9";
    const Case cases[] = {
        {"one ring", {1}, all},
        {"nothing", {0, 0}, ""},
        {"an island in a hole", {1, 0, 2, 0, 3}, all + hole + " " + island},
        {"holes that touch", {1, 2, 4}, all + hole + "(6,6 6,8 8,8 8,6 6,6)"},
        {"a hole that touches its outer ring", {1, 5}, all + "(0,0 1,2 1,1 0,0)"},
        {"outer rings that touch", {1, 6}, all + " (9,9 12,12 9,12 9,9)"},
        {"two arcs in any order", {8, 7}, square},
        {"the wrong way round", {-1, 0, -2}, all + hole},
        {"a bridge from a hole to the outside", {1, 13, -13, 5}, all + "(0,0 1,2 1,1 0,0)"},
        {"two polygons and the arc between them", {7, 16, -16, 8}, square},
        {"a loose end in both directions", {7, 9, -9, 8}, square},
        {"a loose end in one", {7, 9, 8}, square + "; does not close 9" + loose},
        {"an arc that is missing",
         {7, 99},
         "; names an arc that is not there 99; does not close 7: 20,0 20,5 25,5"},
        {"the least of all numbers",
         {std::numeric_limits<int32_t>::min()},
         "; names an arc that is not there -2147483648"},
        {"a hole whose outer ring is missing",
         {99, -1},
         "; names an arc that is not there 99; has a ring that is outside where it belongs 0:"
         " 0,0 9,0 9,9 0,9 0,0"},
        {"an arc twice", {1, 1}, all + "; names an arc more than once 1"},
        {"a ring that crosses itself",
         {1, 10},
         all + "; has a ring that crosses itself 0: 20,0 40,40 40,0 30,30 20,0"},
        {"no numbers", {1, 11}, all + "; has an arc with coordinates that cannot be used 11"},
        {"one vertex", {12}, "; has an arc with coordinates that cannot be used 12"},
        {"there and back", {13, 14}, "; has a ring without an area 0: 0,0 4,4 0,0"},
        {"an outer ring in another",
         {1, 15},
         all + "; has a ring that is outside where it belongs 0: 1,1 1,2 2,2 2,1 1,1"},
    };
    Arcs arcs;
    arcs.arcs = kArcs;
    Assembler assembler(arcs);
    for (const Case& each : cases) {
        EXPECT_EQ(text(assembler.assemble(each.list)), each.expected) << each.what;
    }
}

// Lists that claim much give no more than their arcs hold, in a time that goes with their length.
TEST(Areas, LargeAndHostileLists) {
    Arcs arcs;
    arcs.arcs = kArcs;
    Assembler assembler(arcs);
    EXPECT_EQ(text(assembler.assemble(std::vector<int32_t>(1'000'000, 15))),
              "(1,1 2,1 2,2 1,2 1,1); names an arc more than once 15");

    // A hundred thousand holes, and as many that all touch in one vertex.
    constexpr int kSide = 317;
    const auto square = [](double x, double y, double size) {
        return std::vector<Point>{
            {x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}, {x, y}};
    };
    const double end = kSide + 1;
    arcs.arcs = {{1, {{-1, -1}, {-1, end}, {end, end}, {end, -1}, {-1, -1}}}};
    std::vector<int32_t> list{1};
    for (int hole = 0; hole < kSide * kSide; ++hole) {
        list.push_back(hole + 2);
        arcs.arcs[hole + 2] = square(hole % kSide, hole / kSide, 0.5);  // NOLINT: rows
    }
    Assembler sieveMaker(arcs);
    const Shape& sieve = sieveMaker.assemble(list);
    EXPECT_EQ(sieve.ringCounts, std::vector<uint32_t>{kSide * kSide + 1});
    EXPECT_TRUE(sieve.problems.empty());

    for (int hole = 0; hole < kSide * kSide; ++hole) {
        const double from = hole * 1e-5, to = from + 0.5e-5;
        arcs.arcs[hole + 2] = {{1, 1},
                               {1 + std::cos(from), 1 + std::sin(from)},
                               {1 + std::cos(to), 1 + std::sin(to)},
                               {1, 1}};
    }
    Assembler starMaker(arcs);
    const Shape& star = starMaker.assemble(list);
    EXPECT_EQ(star.ringCounts, std::vector<uint32_t>{kSide * kSide + 1});
    EXPECT_TRUE(star.problems.empty());

    // Rings in rings, each second one a hole.
    list.clear();
    for (int32_t ring = 1; ring <= 20000; ++ring) {
        arcs.arcs[ring] = square(ring, ring, 2.0 * (20001 - ring));
        list.push_back(ring % 2 == 1 ? -ring : ring);
    }
    Assembler targetMaker(arcs);
    const Shape& target = targetMaker.assemble(list);
    EXPECT_EQ(target.ringCounts, std::vector<uint32_t>(10000, 2));
    EXPECT_TRUE(target.problems.empty());
}

// A map of square cells, each of one of a few polygons, turned so that nothing is level: corners
// touch, holes have islands, and polygons come in many parts.
class RandomMap {
  public:
    RandomMap(uint32_t seed, int side, int polygons) : side_(side), cells_(cellCount()) {
        std::mt19937 random(seed);
        for (int& cell : cells_)
            cell = static_cast<int>(random() % static_cast<unsigned>(polygons));
        for (int y = 0; y <= side; ++y) {
            for (int x = 0; x <= side; ++x) {
                // Upwards and to the right, in either direction.
                add(random, {x, y}, {x, y + 1}, at(x - 1, y), at(x, y));
                add(random, {x, y}, {x + 1, y}, at(x, y), at(x, y - 1));
            }
        }
        lists.finish();
    }

    // 0 outside.
    int at(int x, int y) const {
        const bool in = x >= 0 && y >= 0 && x < side_ && y < side_;
        return in ? cells_[static_cast<std::size_t>(y * side_ + x)] + 1 : 0;
    }
    static Point place(double x, double y) { return {2 * x - y + 0.1, x + 3 * y + 0.7}; }
    static constexpr double kCellArea = 7;

    // The parts of a polygon: cells that share sides.
    std::size_t parts(int polygon) const {
        std::vector<bool> seen(cells_.size());
        std::size_t count = 0;
        for (int start = 0; start < side_ * side_; ++start) {
            std::vector<std::pair<int, int>> open{{start % side_, start / side_}};
            bool any = false;
            while (!open.empty()) {
                const auto [x, y] = open.back();
                open.pop_back();
                if (at(x, y) != polygon) continue;
                const auto cell = static_cast<std::size_t>(y * side_ + x);
                if (seen[cell]) continue;
                seen[cell] = any = true;
                open.insert(open.end(), {{x + 1, y}, {x - 1, y}, {x, y + 1}, {x, y - 1}});
            }
            count += any ? 1 : 0;
        }
        return count;
    }

    Arcs arcs;
    ArcsByPolygon lists;

  private:
    std::size_t cellCount() const { return static_cast<std::size_t>(side_ * side_); }

    void add(std::mt19937& random, std::pair<int, int> from, std::pair<int, int> to, int left,
             int right) {
        if (left == right) return;
        if (random() % 2 == 0) {
            std::swap(from, to);
            std::swap(left, right);
        }
        const auto number = static_cast<int32_t>(arcs.arcs.size() + 1);
        arcs.arcs[number] = {place(from.first, from.second), place(to.first, to.second)};
        lists.add(number, left, right);
    }

    int side_;
    std::vector<int> cells_;
};

double shoelace(std::span<const Point> ring) {
    double area = 0;
    for (std::size_t index = 1; index < ring.size(); ++index) {
        area += (ring[index - 1].x - ring[0].x) * (ring[index].y - ring[0].y) -
                (ring[index].x - ring[0].x) * (ring[index - 1].y - ring[0].y);
    }
    return area / 2;
}

bool holds(std::span<const Point> ring, const Point& point) {
    bool inside = false;
    for (std::size_t index = 1; index < ring.size(); ++index) {
        const Point &a = ring[index - 1], &b = ring[index];
        if ((a.y > point.y) == (b.y > point.y)) continue;
        if (point.x < a.x + (point.y - a.y) / (b.y - a.y) * (b.x - a.x)) inside = !inside;
    }
    return inside;
}

// In how many polygons of a shape a point lies, by their rings alone.
int depth(const Shape& shape, const Point& point) {
    int count = 0;
    std::size_t ring = 0;
    for (const uint32_t rings : shape.ringCounts) {
        int inside = 0;
        for (uint32_t each = 0; each < rings; ++each) {
            if (holds(shape.ring(ring++), point)) inside += each == 0 ? 1 : -1;
        }
        EXPECT_GE(inside, 0) << "a hole outside its outer ring";
        count += inside;
    }
    return count;
}

TEST(Areas, RandomMapsComeTogetherWithoutGapOrOverlap) {
    for (uint32_t seed = 1; seed <= 60; ++seed) {
        const int side = 3 + static_cast<int>(seed % 12), polygons = 2 + static_cast<int>(seed % 4);
        RandomMap map(seed, side, polygons);
        Assembler assembler(map.arcs);
        EXPECT_LE(map.lists.polygons().size(), static_cast<std::size_t>(polygons));
        for (const int32_t polygon : map.lists.polygons()) {
            const Shape& shape = assembler.assemble(map.lists.of(polygon));
            ASSERT_TRUE(shape.problems.empty()) << seed << ": " << text(shape);
            EXPECT_EQ(shape.ringCounts.size(), map.parts(polygon)) << seed;
            double area = 0;
            std::size_t ring = 0, cells = 0;
            for (const uint32_t rings : shape.ringCounts) {
                for (uint32_t each = 0; each < rings; ++each, ++ring) {
                    const double of = shoelace(shape.ring(ring));
                    EXPECT_EQ(of > 0, each == 0) << seed;
                    EXPECT_EQ(shape.ring(ring).front(), shape.ring(ring).back());
                    area += of;
                    // No vertex twice in a ring.
                    std::map<double, std::size_t> vertices;
                    for (const Point& point : shape.ring(ring)) ++vertices[point.x * 1e4 + point.y];
                    EXPECT_EQ(vertices.size(), shape.ring(ring).size() - 1) << seed;
                }
            }
            for (int y = 0; y < side; ++y) {
                for (int x = 0; x < side; ++x) {
                    const int expected = map.at(x, y) == polygon ? 1 : 0;
                    cells += static_cast<std::size_t>(expected);
                    ASSERT_EQ(depth(shape, RandomMap::place(x + 0.47, y + 0.52)), expected) << seed;
                }
            }
            EXPECT_NEAR(area, RandomMap::kCellArea * static_cast<double>(cells), 1e-6) << seed;
        }
    }
}

double side(const Point& a, const Point& b, const Point& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// Wandering lines of many lengths, looked through edge by edge. Places are multiples of 1/64, so
// that all of it is exact.
TEST(Areas, CrossingsAreFoundWhereTwoEdgesCross) {
    std::mt19937 random(7);
    CrossingSearch search;
    int crossing = 0;
    for (int round = 0; round < 4000; ++round) {
        std::vector<Point> line(5 + random() % 120);
        const auto step = [&] { return static_cast<int>(random() % 128) - 40; };
        // Some go mostly one way and hardly ever cross, some go anywhere.
        const int drift = round % 3 == 0 ? 40 : round % 3 == 1 ? 0 : -24;
        Point at;
        for (Point& point : line) {
            point = at;
            at.x += (step() + drift) / 64.0;
            at.y += (step() - 24) / 64.0;
        }
        bool expected = false;
        for (std::size_t one = 1; one < line.size(); ++one) {
            for (std::size_t two = 1; two < one; ++two) {
                const Point &a = line[one - 1], &b = line[one], &c = line[two - 1], &d = line[two];
                expected |= side(a, b, c) * side(a, b, d) < 0 && side(c, d, a) * side(c, d, b) < 0;
            }
        }
        crossing += expected ? 1 : 0;
        ASSERT_EQ(search.crossesItself(line), expected) << round << ":" << text(line);
    }
    EXPECT_GT(crossing, 400);
    EXPECT_LT(crossing, 3600);
}

using intake::testing::ImportTest;
using intake::testing::json;

// The map of the world says itself how large its polygons are. Four countries cross themselves.
TEST_F(ImportTest, AreasOfACoverageAreThoseOfItsTable) {
    given(intake::testing::fileBytes(INTAKE_SOURCE_DIR "/samples/wcr.e00"));
    import();
    Arcs arcs;
    ArcsByPolygon sides;
    for (const json& arc : records("arc")) {
        for (const json& vertex : arc["vertices"]) {
            arcs.arcs[arc["number"]].push_back({vertex[0], vertex[1]});
        }
        sides.add(arc["number"], arc["leftPolygon"], arc["rightPolygon"]);
    }
    sides.finish();
    std::map<int32_t, double> areas;
    for (const json& record : records("record")) {
        if (record["table"] == "DS.PAT") areas[record["number"]] = record["values"]["AREA"];
    }
    Assembler assembler(arcs);
    std::vector<int32_t> crossing;
    for (const json& polygon : records("polygon")) {
        const int32_t number = polygon["number"];
        if (number == 1) continue;  // the outside
        std::vector<int32_t> list;
        for (const json& arc : polygon["arcs"]) list.push_back(arc[0]);
        const std::string stored = text(assembler.assemble(list));
        const Shape& shape = assembler.assemble(sides.of(number));
        EXPECT_EQ(stored, text(shape)) << "the stored list and the sides of the arcs differ";
        if (!shape.problems.empty()) {
            crossing.push_back(number);
            EXPECT_EQ(shape.problems[0].reason, Reason::CrossesItself);
            continue;
        }
        double area = 0;
        for (std::size_t ring = 0; ring < shape.rings(); ++ring) area += shoelace(shape.ring(ring));
        EXPECT_NEAR(area, areas.at(number), 1e-4 * areas.at(number)) << number;
    }
    EXPECT_EQ(crossing, (std::vector<int32_t>{3, 72, 85, 86}));
}

}  // namespace
}  // namespace topology
