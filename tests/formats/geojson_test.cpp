#include "formats/geojson/geojson.h"

#include <cmath>
#include <numbers>
#include <random>

#include "formats/numbers.h"
#include "tests/formats/formats_test.h"

namespace formats::testing {

namespace {

using intake::testing::fileBytes;
using intake::testing::json;

// A globe seen from above a pole: metres from it, along the meridian of Greenwich downwards.
constexpr double kMetresPerDegree = 100'000;
double pole = 1;  // 1 or -1
void fromPolar(std::span<double> pairs) {
    for (std::size_t i = 0; i < pairs.size(); i += 2) {
        const double x = pairs[i], y = pairs[i + 1];
        pairs[i] = std::atan2(x, -pole * y) * 180 / std::numbers::pi;
        pairs[i + 1] = pole * (90 - std::hypot(x, y) / kMetresPerDegree);
    }
}

// A cylinder: longitudes with a false origin in the middle of the Pacific.
void fromPacific(std::span<double> pairs) {
    for (std::size_t i = 0; i < pairs.size(); i += 2) {
        pairs[i] = std::remainder(pairs[i] / kMetresPerDegree + 180, 360);
        pairs[i + 1] /= kMetresPerDegree;
    }
}

class GeoJsonTest : public FormatsTest {
  protected:
    Options options;

    void SetUp() override {
        options.replace = true;
        projection(nullptr);
    }
    void projection(void (*toWgs84)(std::span<double>)) {
        projected = toWgs84 != nullptr;
        options.toWgs84 = [=](const crs::ReferenceSystem& system) -> Transform {
            if (!system.defined()) return {};
            if (toWgs84) return toWgs84;
            return [](std::span<double>) {};
        };
    }

    Layer of(const std::string& name, GeometryType type, std::vector<Column> columns = {}) {
        Layer made = layer(name, type, std::move(columns));
        made.system = wgs84();
        if (projected) made.system.kind = crs::Kind::Projected;
        return made;
    }

    // The geometry that comes of one feature.
    json geometry(GeometryType type, const Parts& parts) {
        auto out = geojson::collections().make(path("out.geojson"), options);
        out->begin(of("a", type));
        kept = out->add(1, parts, {});
        out->end();
        out->finish();
        feature = json::parse(fileBytes(path("out.geojson")))["features"][0];
        return feature["geometry"];
    }

    bool projected = false;
    bool kept = false;
    json feature;
};

double ringArea(const json& ring) {
    double twice = 0;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        twice += ring[i - 1][0].get<double>() * ring[i][1].get<double>() -
                 ring[i][0].get<double>() * ring[i - 1][1].get<double>();
    }
    return twice / 2;
}

// The area of a polygon or several, having looked at what must hold of their rings.
double areaOf(const json& geometry) {
    double sum = 0;
    const json polygons = geometry["type"] == "Polygon" ? json::array({geometry["coordinates"]})
                                                        : geometry["coordinates"];
    for (const json& polygon : polygons) {
        for (std::size_t i = 0; i < polygon.size(); ++i) {
            const json& ring = polygon[i];
            EXPECT_GE(ring.size(), 4U);
            EXPECT_EQ(ring.front(), ring.back());
            const double area = ringArea(ring);
            EXPECT_TRUE(i == 0 ? area > 0 : area < 0) << ring;
            sum += area;
            for (const json& vertex : ring) EXPECT_LE(std::abs(vertex[0].get<double>()), 180);
        }
    }
    return sum;
}

std::vector<double> fivePoints(double west, double south, double east, double north) {
    return {west, south, east, south, east, north, west, north, west, south};
}

}  // namespace

TEST_F(GeoJsonTest, IsReadBackAsItWasGiven) {
    const auto write = [&](const WriterMaker& maker) {
        auto out = maker.make(path("out"), options);
        out->begin(of("ro\"ads", GeometryType::kLineString,
                      {{"n", ColumnType::kInteger, 4},
                       {"N", ColumnType::kReal, 8},
                       {"single", ColumnType::kReal, 4},
                       {"te\"xt\n", ColumnType::kText},
                       {"day", ColumnType::kDate},
                       {"layer", ColumnType::kText}}));
        const Value values[] = {
            INT64_MAX, 0.1, double(0.1F), "a\"b\\c\x01\r\n\t\u00e4\u20ac/", Date{2024, 2, 29}, "x"};
        EXPECT_TRUE(out->add(3, Parts({{1.23456786, -2, 3, 4.5}}), values));
        const Value nothing[] = {{}, NAN, INFINITY, "", {}, {}};
        EXPECT_TRUE(out->add(4, {}, nothing));
        EXPECT_FALSE(out->add(5, Parts({{1, NAN, 3, 4}}), nothing));
        EXPECT_FALSE(out->add(6, Parts({{1, 2, 3, 90.1}}), nothing));
        out->end();
        const bool texts = out->text({"log", "text/plain", "", "", "one\ntwo"});
        out->begin(layer("WORLD.PAT", GeometryType::kNone));
        out->add(9, {}, {});
        out->end();
        out->finish();
        return texts;
    };
    const json first = {{"layer", "ro\"ads"},
                        {"n", INT64_MAX},
                        {"N_2", 0.1},
                        {"single", 0.1},
                        {"day", "2024-02-29"},
                        {"layer_2", "x"},
                        {"te\"xt\n", "a\"b\\c\x01\r\n\t\u00e4\u20ac/"}};
    const json empty = {{"layer", "ro\"ads"}, {"n", {}},   {"N_2", {}},    {"single", {}},
                        {"te\"xt\n", ""},     {"day", {}}, {"layer_2", {}}};
    json features = {
        {{"type", "Feature"},
         {"id", 3},
         {"geometry", {{"type", "LineString"}, {"coordinates", {{1.2345679, -2}, {3, 4.5}}}}},
         {"properties", first}}};
    for (const int id : {4, 5, 6}) {
        features.push_back(
            {{"type", "Feature"}, {"id", id}, {"geometry", {}}, {"properties", empty}});
    }
    features.push_back({{"type", "Feature"},
                        {"id", 9},
                        {"geometry", {}},
                        {"properties", {{"layer", "WORLD.PAT"}}}});

    EXPECT_TRUE(write(geojson::collections()));
    EXPECT_EQ(json::parse(fileBytes(path("out"))),
              (json{{"type", "FeatureCollection"},
                    {"features", features},
                    {"texts", {{{"name", "log"}, {"type", "text/plain"}, {"text", "one\ntwo"}}}}}));
    // The single real has the digits of a single real.
    EXPECT_NE(fileBytes(path("out")).find("\"single\":0.1,"), std::string::npos);

    EXPECT_FALSE(write(geojson::lines()));
    std::istringstream lines(fileBytes(path("out")));
    json read = json::array();
    for (std::string line; std::getline(lines, line);) read.push_back(json::parse(line));
    EXPECT_EQ(read, features);

    std::filesystem::remove(path("out"));
    options.folder = true;
    EXPECT_TRUE(write(geojson::collections()));
    const json roads = json::parse(fileBytes(path("out/ro_ads.geojson")));
    EXPECT_EQ(roads["name"], "ro_ads");
    EXPECT_EQ(roads["features"].size(), 4U);
    EXPECT_EQ(roads["features"][0]["properties"]["layer"], "x");
    EXPECT_EQ(json::parse(fileBytes(path("out/WORLD.PAT.geojson")))["features"].size(), 1U);
    EXPECT_EQ(fileBytes(path("out/log.txt")), "one\ntwo");
}

TEST_F(GeoJsonTest, WithoutAWayToLongitudesItSaysSo) {
    Layer undefined = layer("a", GeometryType::kPolygonZ);
    undefined.system.name = "undefined";
    const auto write = [&] {
        auto out = geojson::collections().make(path("out"), options);
        out->begin(undefined);
        out->add(1,
                 Parts({{600000.123456789, 0.1, 9, 600000, 0, 1e-9, 600001, 1, 3,  //
                         600000.123456789, 0.1, 9}}),
                 {});
        out->end();
        out->finish();
    };
    EXPECT_NE(complaint(write).find("no way to them from this reference system: undefined"),
              std::string::npos);
    EXPECT_EQ(files(), std::vector<std::string>{});
    options.asIs = true;
    undefined.system.epsg = 26917;
    write();
    const json all = json::parse(fileBytes(path("out")));
    EXPECT_EQ(all["crs"]["properties"]["name"], "urn:ogc:def:crs:EPSG::26917");
    EXPECT_EQ(all["features"][0]["geometry"], (json{{"type", "Polygon"},
                                                    {"coordinates",
                                                     {{{600000.123456789, 0.1, 9},
                                                       {600001, 1, 3},
                                                       {600000.0, 0, 1e-9},
                                                       {600000.123456789, 0.1, 9}}}}}));
}

TEST_F(GeoJsonTest, LinesAndPointsAreCutAtTheAntimeridian) {
    const auto line = [&](Part part) {
        return geometry(GeometryType::kLineString, Parts({std::move(part)}))["coordinates"];
    };
    // Geographic coordinates run on beyond 180, or between -180 and 180 once around the world.
    EXPECT_EQ(line({170, 0, 190, 10}), (json{{{170, 0}, {180, 5}}, {{-180, 5}, {-170, 10}}}));
    EXPECT_EQ(line({-170, 0, -190, 10}), (json{{{-170, 0}, {-180, 5}}, {{180, 5}, {170, 10}}}));
    EXPECT_EQ(line({-180, 5, 180, 5}), (json{{-180, 5}, {180, 5}}));
    EXPECT_EQ(line({190, 0, 200, 10}), (json{{-170, 0}, {-160, 10}}));
    EXPECT_EQ(line({180, 0, 180, 10}), (json{{180, 0}, {180, 10}}));
    EXPECT_EQ(line({170, 0, 180, 5, 170, 10}), (json{{170, 0}, {180, 5}, {170, 10}}));
    EXPECT_EQ(line({180, 0, 190, 5, 180, 10, 170, 0}),
              (json{{{-180, 0}, {-170, 5}, {-180, 10}}, {{180, 10}, {170, 0}}}));
    EXPECT_EQ(line({170, 0, 550, 38}),
              (json{{{170, 0}, {180, 1}}, {{-180, 1}, {180, 37}}, {{-180, 37}, {-170, 38}}}));
    EXPECT_EQ(line({1e9, 0, 2, 3}), json());
    EXPECT_FALSE(kept);
    EXPECT_EQ(geometry(GeometryType::kPoint, Parts({{190, 5}}))["coordinates"], (json{-170, 5}));
    EXPECT_EQ(geometry(GeometryType::kPoint, Parts({{-180, 5}}))["coordinates"], (json{-180, 5}));
    options.boundingBoxes = true;
    EXPECT_EQ(geometry(GeometryType::kLineStringZ, Parts({{170, 0, 1, 190, 10, 3}}))["coordinates"],
              (json{{{170, 0, 1}, {180, 5, 2}}, {{-180, 5, 2}, {-170, 10, 3}}}));
    EXPECT_EQ(feature["bbox"], (json{170, 0, 1, -170, 10, 3}));

    // Projected ones take the shorter way.
    projection(fromPacific);
    EXPECT_EQ(line({-1e6, 0, 1e6, 1e6}), (json{{{170, 0}, {180, 5}}, {{-180, 5}, {-170, 10}}}));
    EXPECT_EQ(line({-15e6, 0, -16e6, 1e6}), (json{{30, 0}, {20, 10}}));
}

TEST_F(GeoJsonTest, PolygonsAreCutAtTheAntimeridian) {
    options.boundingBoxes = true;
    // A square with a hole, both across; and a hole on each side.
    const json cut = geometry(GeometryType::kPolygon,
                              Parts({fivePoints(170, 0, 190, 20), fivePoints(178, 5, 182, 10),
                                     fivePoints(171, 1, 172, 2), fivePoints(188, 1, 189, 2)}));
    EXPECT_EQ(cut["type"], "MultiPolygon");
    EXPECT_NEAR(areaOf(cut), 400 - 20 - 2, 1e-6);
    EXPECT_EQ(cut["coordinates"].size(), 2U);
    for (const json& polygon : cut["coordinates"]) EXPECT_EQ(polygon.size(), 2U);
    EXPECT_EQ(feature["bbox"], (json{170, 0, -170, 20}));

    // A comb whose teeth come apart.
    const json comb =
        geometry(GeometryType::kPolygon,
                 Parts({{170, 0, 190, 0, 190, 2, 175, 2, 175, 4, 190, 4, 190, 6, 170, 6, 170, 0}}));
    EXPECT_EQ(comb["coordinates"].size(), 3U);
    EXPECT_NEAR(areaOf(comb), 20 * 2 * 2 + 5 * 2, 1e-6);

    // The whole world, in two ways; what only touches; what lies beyond.
    EXPECT_NEAR(areaOf(geometry(GeometryType::kPolygon, Parts({fivePoints(-180, -90, 180, 90)}))),
                360 * 180, 1e-6);
    EXPECT_EQ(feature["geometry"]["type"], "Polygon");
    EXPECT_NEAR(areaOf(geometry(GeometryType::kPolygon, Parts({fivePoints(0, -90, 360, 90)}))),
                360 * 180, 1e-6);
    EXPECT_EQ(feature["bbox"], (json{-180, -90, 180, 90}));
    const json touching = geometry(GeometryType::kPolygon, Parts({fivePoints(170, 0, 180, 1)}));
    EXPECT_EQ(touching["type"], "Polygon");
    const json beyond = geometry(GeometryType::kMultiPolygon, Parts({fivePoints(180, 0, 190, 1)}));
    EXPECT_EQ(beyond["coordinates"],
              (json{{{{-180, 0}, {-170, 0}, {-170, 1}, {-180, 1}, {-180, 0}}}}));
    // Rings that are given the wrong way round.
    EXPECT_NEAR(areaOf(geometry(GeometryType::kPolygon,
                                Parts({{170, 0, 170, 20, 190, 20, 190, 0, 170, 0}}))),
                400, 1e-6);
    geometry(GeometryType::kPolygon, Parts({fivePoints(0, 0, 800, 1)}));
    EXPECT_FALSE(kept);
}

// Stars with a hole, wherever they lie: the pieces have the area of the whole.
TEST_F(GeoJsonTest, PiecesOfPolygonsAddUp) {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> unit(0, 1);
    for (int round = 0; round < 300; ++round) {
        const double middle = 150 + 60 * unit(random);
        const int corners = 5 + static_cast<int>(60 * unit(random));
        Part outer, hole;
        for (int i = 0; i < corners; ++i) {
            const double angle = 2 * std::numbers::pi * i / corners;
            const double far = 20 + 20 * unit(random);
            const double near = 3 + 12 * unit(random);
            for (const auto& [part, radius] : {std::pair{&outer, far}, {&hole, near}}) {
                part->push_back(middle + radius * std::cos(angle));
                part->push_back(radius * std::sin(angle));
            }
        }
        double expected = 0;
        for (Part* part : {&outer, &hole}) {
            part->push_back((*part)[0]);
            part->push_back((*part)[1]);
            double twice = 0;
            for (std::size_t i = 2; i < part->size(); i += 2) {
                twice += (*part)[i - 2] * (*part)[i + 1] - (*part)[i] * (*part)[i - 1];
            }
            expected += part == &outer ? twice / 2 : -twice / 2;
        }
        projection(nullptr);
        EXPECT_NEAR(areaOf(geometry(GeometryType::kPolygon, Parts({outer, hole}))), expected, 1e-3);
        for (Part* part : {&outer, &hole}) {
            for (std::size_t i = 0; i < part->size(); i += 2) {
                (*part)[i] = ((*part)[i] - 180) * kMetresPerDegree;
                (*part)[i + 1] *= kMetresPerDegree;
            }
        }
        projection(fromPacific);
        EXPECT_NEAR(areaOf(geometry(GeometryType::kPolygon, Parts({outer, hole}))), expected, 1e-3);
    }
}

TEST_F(GeoJsonTest, PolygonsAroundAPoleReachIt) {
    projection(fromPolar);
    const auto circle = [](double degrees, double x = 0) {
        Part part;
        for (int i = 0; i <= 360; ++i) {
            const double angle = 2 * std::numbers::pi * (i % 360) / 360;
            part.push_back(degrees * kMetresPerDegree * std::cos(angle) + x);
            part.push_back(degrees * kMetresPerDegree * std::sin(angle));
        }
        return part;
    };
    for (const double which : {1.0, -1.0}) {
        pole = which;
        const json cap = geometry(GeometryType::kPolygon, Parts({circle(10)}));
        EXPECT_EQ(cap["type"], "Polygon");
        EXPECT_NEAR(areaOf(cap), 360 * 10, 1e-3);
        double farthest = 0;
        for (const json& vertex : cap["coordinates"][0]) {
            farthest = std::max(farthest, which * vertex[1].get<double>());
        }
        EXPECT_EQ(farthest, 90);
        // A hole beside the pole, and one around it.
        EXPECT_NEAR(areaOf(geometry(GeometryType::kPolygon, Parts({circle(10), circle(1, 4e5)}))),
                    3600, 90);
        EXPECT_LT(areaOf(feature["geometry"]), 3595);
        EXPECT_EQ(feature["geometry"]["coordinates"].size(), 2U);
        EXPECT_NEAR(areaOf(geometry(GeometryType::kPolygon, Parts({circle(10), circle(4)}))),
                    360 * 6, 1e-3);
        // Across the antimeridian, but not around the pole.
        EXPECT_EQ(
            geometry(GeometryType::kPolygon, Parts({fivePoints(-5e4, 9e5, 5e4, 10e5)}))["type"],
            which > 0 ? "MultiPolygon" : "Polygon");
    }
}

TEST(Numbers, SevenDecimalsAreThoseOfTheLibrary) {
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> degrees(-180, 180);
    std::vector<double> values{0,   -0.0,        1e-8,        -4e-8, 6e-8,  0.1,        1.5,
                               100, -99.9999999, 12.00000006, 180,   8.5e8, 899999999.5};
    for (int i = 0; i < 100'000; ++i) values.push_back(degrees(random));
    for (const double value : values) {
        // What is left of the library's digits without zeros at the end.
        std::array<char, 64> digits{};
        std::snprintf(digits.data(), digits.size(), "%.7f", value);
        std::string expected(digits.data());
        expected.erase(expected.find_last_not_of('0') + 1);
        if (expected.back() == '.') expected.pop_back();
        if (expected == "-0") expected = "0";
        std::string text;
        appendSevenDecimals(text, value);
        EXPECT_EQ(text, expected);
    }
    std::string text;
    appendSevenDecimals(text, 1e300);
    EXPECT_EQ(text, "1e+300");
}

}  // namespace formats::testing
