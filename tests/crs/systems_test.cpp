// Projection texts and what they mean, held against codes of the registry and against examples that
// map makers have published.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "crs/datums.h"
#include "crs/meaning.h"
#include "crs/proj_systems.h"
#include "crs/state_plane.h"

namespace crs {
namespace {

const ProjSystems kSystems;
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

// "UTM; Zone 17; Datum NAD27; Units METERS; Parameters" as lines.
std::string lines(std::string text) {
    for (std::size_t at; (at = text.find("; ")) != std::string::npos;) text.replace(at, 2, "\n");
    return "Projection    " + text + "\n";
}
ReferenceSystem made(const std::string& text) { return kSystems.fromText(lines(text)); }

const std::string kUtm =
    "UTM; Zone          17; Datum         NAD27; Zunits        NO; Units         METERS; "
    "Spheroid      CLARKE1866; Xshift        0.0000000000; Yshift        0.0000000000; Parameters";
const std::string kAlbers =
    "ALBERS; Datum         NAD83; Zunits        NO; Units         METERS; Spheroid      GRS1980; "
    "Xshift        0.0000000000; Yshift        0.0000000000; Parameters; "
    " 29 30  0.000 /* 1st standard parallel; 45 30  0.000 /* 2nd standard parallel; "
    "-96  0  0.000 /* central meridian; 23  0  0.000 /* latitude of projection's origin; "
    "0.00000 /* false easting (meters); 0.00000 /* false northing (meters)";

TEST(Systems, TextsOfKnownSystemsGetTheirCode) {
    struct Case {
        std::string text;
        int32_t epsg;
        const char* description;
    };
    const std::string conic = "; Parameters; 33 0 0; 45 0 0; -96 0 0; 39 0 0; 0; 0";
    const Case cases[] = {
        {"GEOGRAPHIC; Datum WGS84; Spheroid WGS84; Units DD; Zunits NO; Parameters", 4326,
         "WGS 84 (EPSG:4326), degrees"},
        {"geographic; datum nas_c; units dd; parameters", 4267, "NAD27 (EPSG:4267), degrees"},
        {"GEOGRAPHIC; Datum EUR; Spheroid INT1909; Units DD; Parameters", 4230,
         "ED50 (EPSG:4230), degrees"},
        {"GEOGRAPHIC; Datum NAD27; Units DS; Parameters", 0, "NAD27, decimal seconds"},
        {kUtm, 26717, "NAD27 / UTM zone 17N (EPSG:26717), metres"},
        {"UTM; Zone -34; Datum WGS84; Units METERS; Parameters", 32734, nullptr},
        {"UTM; Zone 34; Datum WGS84; Units METERS; Yshift 10000000; Parameters", 32734, nullptr},
        {"UTM; Datum WGS84; Units METERS; Parameters; 21 15 0; -10 0 0", 32734, nullptr},
        {"UTM; Zone 10; Datum NAD27; Units METERS; Yshift -4000000; Parameters", 0,
         "NAD27 / UTM zone 10N shifted, metres"},
        {"UTM; Zone 17; Datum NONE; Spheroid CLARKE1866; Units METERS; Parameters", 0,
         "Unknown based on Clarke 1866 ellipsoid / UTM zone 17N, metres"},
        {"UTM; Zone 16; Datum NAD27; Units FEET; Parameters", 0,
         "NAD27 / UTM zone 16N, US survey feet"},
        {kAlbers, 5070, "NAD83 / Conus Albers (EPSG:5070), metres"},
        {"LAMBERT; Datum NAR; Units METERS; Spheroid GRS80" + conic, 0,
         "NAD83 / Lambert conformal conic, metres"},
        {"TRANSVERSE; Datum OGB; Spheroid AIRY; Units METERS; Parameters; 0.9996012717; -2 0 0; "
         "49 0 0; 400000; -100000",
         27700, nullptr},
        {"MERCATOR; Datum WGS84; Units METERS; Parameters; 0 0 0; 0 0 0; 0; 0", 3395, nullptr},
        {"MERCATOR; Datum WGS84; Units METERS; Parameters; 100 0 0; -41 0 0; 0; 0", 3994, nullptr},
        {"POLAR; Datum WGS84; Units METERS; Parameters; 0 0 0; -71 0 0; 0; 0", 3031, nullptr},
        {"POLAR; Datum WGS84; Units METERS; Parameters; 315 0 0; 70 0 0; 0; 0", 3413, nullptr},
        {"STATEPLANE; Fipszone 3104; Datum NAD83; Units FEET; Parameters", 2263, nullptr},
        {"STATEPLANE; Fipszone 3104; Datum NAD83; Units FEET; Xshift 100; Parameters", 0,
         "NAD83 / New York Long Island shifted, US survey feet"},
        {"STATEPLANE; Fipszone 3601; Datum NAD83; Units 3.280839895; Parameters", 2269, nullptr},
        {"STATEPLANE; Zone 5351; Fipszone 4202; Datum NAD27; Units FEET; Parameters", 32038,
         nullptr},
        {"STATEPLANE; Fipszone 5001; Datum NAD83; Units METERS; Yshift -1; Parameters", 0,
         "NAD83 / Alaska zone 1 shifted, metres"},
    };
    for (const Case& each : cases) {
        const ReferenceSystem system = made(each.text);
        EXPECT_TRUE(system.defined()) << each.text << ": " << system.stoppedBy;
        EXPECT_EQ(system.epsg, each.epsg) << each.text << ": " << system.wkt2;
        if (each.description != nullptr) {
            EXPECT_EQ(system.description, each.description);
        }
        EXPECT_EQ(system.text, lines(each.text));
        EXPECT_FALSE(system.wkt2.empty() || system.wkt1.empty());
        const bool unknown = system.name.starts_with("Unknown");
        EXPECT_EQ(system.wkt2.find("Unknown based on") != std::string::npos, unknown);
    }
    const ReferenceSystem shifted = made(
        "UTM; Zone 10; Datum NAD27; Units METERS; Yshift -4000000; "
        "Zunits FEET; Parameters");
    EXPECT_EQ(shifted.yShift, -4000000);
    EXPECT_EQ(shifted.heightUnits, "FEET");
    EXPECT_NE(shifted.wkt1.find("PARAMETER[\"false_northing\",-4000000]"), std::string::npos);
    EXPECT_TRUE(shifted.wkt1.starts_with("PROJCS["));
    EXPECT_TRUE(shifted.wkt2.starts_with("PROJCRS["));
}

TEST(Systems, EveryZoneAndDatumOfTheTablesIsThere) {
    int zones = 0;
    for (int32_t fips = 1; fips < 6000; ++fips) {
        const StatePlaneZone* const zone = zoneByFips(fips);
        if (zone == nullptr) continue;
        ++zones;
        if (zone->zone != 0) {
            EXPECT_EQ(zoneByNumber(zone->zone), zone);
        }
        for (const bool old : {true, false}) {
            const int32_t code = old ? zone->nad27 : zone->nad83;
            const ReferenceSystem system = made("STATEPLANE; Fipszone " + std::to_string(fips) +
                                                (old ? "; Datum NAD27; Units FEET; Parameters"
                                                     : "; Datum NAD83; Units METERS; Parameters"));
            EXPECT_EQ(system.epsg, code);
            EXPECT_EQ(system.defined(), code != 0) << system.stoppedBy;
            const ReferenceSystem byCode = kSystems.byHand("EPSG:" + std::to_string(code));
            if (code != 0) {
                EXPECT_NEAR(byCode.perUnit, system.perUnit, 1e-12) << fips;
            }
        }
    }
    EXPECT_EQ(zones, 134);

    for (const char* word :
         {"NAD27",     "NAD83",   "WGS84",        "WGS72",           "ED50",           "ED79",
          "OSGB36",    "AGD66",   "AGD84",        "NZGD49",          "SAD69",          "PSAD56",
          "TOKYO",     "AFGOOYE", "BOGOTA",       "CAMPO_INCHAUSPE", "CORREGO_ALEGRE", "HJORSEY",
          "KANDAWALA", "LUZON",   "OLD_HAWAIIAN", "PUERTO_RICO",     "MINNA",          "ADINDAN",
          "ARC1960"}) {
        const Datum* const row = datum(word);
        ASSERT_NE(row, nullptr) << word;
        const Spheroid* const round = spheroid(row->spheroid);
        ASSERT_NE(round, nullptr) << word;
        const ReferenceSystem system =
            made("GEOGRAPHIC; Datum " + std::string(row->letters) + "_X; Units DD; Parameters");
        EXPECT_EQ(system.epsg, row->geographic) << word << system.stoppedBy;
        EXPECT_EQ(system.name, row->name);
        EXPECT_NE(system.wkt2.find("ELLIPSOID[\"" + std::string(round->name)), std::string::npos)
            << system.wkt2;
    }
}

// Examples of the registry's guidance note on coordinate conversions and of the geological survey's
// working manual on map projections. A datum would move them, so these texts have none.
TEST(Systems, PublishedCoordinatesComeBack) {
    struct Case {
        const char* text;
        double x, y, longitude, latitude;
    };
    const Case cases[] = {
        {"TRANSVERSE; Spheroid AIRY; Units METERS; Parameters; 0.9996012717; -2 0 0; 49 0 0; "
         "400000; -100000",
         577274.99, 69740.50, 0.5, 50.5},
        {"LAMBERT; Spheroid CLARKE1866; Units FEET; Parameters; 28 23 0 /* 1st parallel; "
         "30 17 0 /* 2nd parallel; -99 0 0 /* meridian; 27 50 0 /* latitude; "
         "609601.21920 /* false easting (meters); 0 /* false northing (meters)",
         2963503.91, 254759.80, -96, 28.5},
        {"LAMBERT; Spheroid CLARKE1866; Units METERS; Parameters; 18 0 0; 18 0 0; -77 0 0; 18 0 0; "
         "250000; 150000",
         255966.58, 142493.51, -(76 + 56.0 / 60 + 37.26 / 3600), 17 + 55.0 / 60 + 55.80 / 3600},
        {"LAMBERT; Spheroid CLARKE1866; Units METERS; Parameters; 1.0 /* scale factor; "
         "-77 0 0 /* meridian; 18 0 0 /* latitude; 250000 /* easting; 150000 /* northing",
         255966.58, 142493.51, -(76 + 56.0 / 60 + 37.26 / 3600), 17 + 55.0 / 60 + 55.80 / 3600},
        {"MERCATOR; Spheroid KRASOVSKY; Units METERS; Parameters; 51 0 0; 42 0 0; 0; 0", 165704.29,
         5171848.07, 53, 53},
        {"POLAR; Spheroid WGS84; Units METERS; Parameters; 70 0 0; -71 0 0; 6000000; 6000000",
         7255380.79, 7053389.56, 120, -75},
        {"POLAR; Spheroid INT1909; Units METERS; Parameters; -100 0 0; -71 0 0; 0; 0", -1540033.6,
         -560526.4, 150, -75},
        {"LAMBERT_AZIMUTHAL; Spheroid GRS1980; Units METERS; Parameters; 10 0 0; 52 0 0; 4321000; "
         "3210000",
         3962799.45, 2999718.85, 5, 50},
        {"LAMBERT_AZIMUTHAL; Spheroid CLARKE1866; Units METERS; Parameters; -100 0 0; 40 0 0; 0; 0",
         -965932.1, -1056814.9, -110, 30},
        {"ALBERS; Spheroid CLARKE1866; Units METERS; Parameters; 29 30 0; 45 30 0; -96 0 0; 23 0 "
         "0; "
         "0; 0",
         1885472.7, 1535925.0, -75, 35},
        {"EQUIDISTANT; Spheroid CLARKE1866; Units METERS; Parameters; 29 30 0; 45 30 0; -96 0 0; "
         "23 0 0; 0; 0",
         1885051.9, 1540507.6, -75, 35},
        {"POLYCONIC; Spheroid CLARKE1866; Units METERS; Parameters; -96 0 0; 30 0 0; 0; 0",
         1776774.5, 1319657.8, -75, 40},
        {"SINUSOIDAL; Spheroid CLARKE1866; Units METERS; Parameters; -90 0 0 /* meridian; "
         "0 /* false easting; 0 /* false northing",
         1075471.5, -5540628.0, -75, -50},
        {"STEREOGRAPHIC; Spheroid CLARKE1866; Units METERS; Parameters; -100 0 0 /* longitude; "
         "40 0 0 /* latitude; 0.9999 /* scale factor; 0 /* false easting; 0 /* false northing",
         971630.8, -1063049.3, -90, 30},
        {"UTM; Zone 18; Spheroid CLARKE1866; Units METERS; Parameters", 627106.5, 4484124.4, -73.5,
         40.5},
        {"UTM; Zone 18; Spheroid CLARKE1866; Units 0.001; Yshift -4000; Parameters", 627.1065,
         484.1244, -73.5, 40.5},
        {"GEOGRAPHIC; Spheroid CLARKE1866; Units DS; Parameters", -73.5 * 3600, 40.5 * 3600, -73.5,
         40.5},
        // The working manual has spheres of radius 1: x = 0.1521..., here times the radius.
        {"ORTHOGRAPHIC; Spheroid SPHERE; Units METERS; Parameters; 6370997; 0 0 0; 40 0 0; 0; 0",
         6370997 * std::cos(30 * M_PI / 180) * std::sin(20 * M_PI / 180),
         6370997 *
             (std::cos(40 * M_PI / 180) * std::sin(30 * M_PI / 180) -
              std::sin(40 * M_PI / 180) * std::cos(30 * M_PI / 180) * std::cos(20 * M_PI / 180)),
         20, 30},
        {"SINUSOIDAL; Spheroid SPHERE; Units METERS; Parameters; 6370997; -90 0 0; 0; 0",
         6370997 * 15 * M_PI / 180 * std::cos(50 * M_PI / 180), 6370997 * -50 * M_PI / 180, -75,
         -50},
    };
    for (const Case& each : cases) {
        const ReferenceSystem system = made(each.text);
        ASSERT_TRUE(system.defined()) << each.text << ": " << system.stoppedBy;
        EXPECT_EQ(system.epsg, 0) << "a datum was guessed";
        const ToWgs84 turn = kSystems.toWgs84(system);
        ASSERT_TRUE(turn) << each.text;
        double pairs[] = {each.x, each.y, each.x, kNoNumber};
        turn(pairs);
        // A tenth of a metre, as far as the examples are printed.
        EXPECT_NEAR(pairs[0], each.longitude, 1.5e-6) << each.text;
        EXPECT_NEAR(pairs[1], each.latitude, 1e-6) << each.text;
        EXPECT_TRUE(std::isinf(pairs[2]) && std::isinf(pairs[3])) << each.text;
    }
}

TEST(Systems, WhatIsNotWhollyUnderstoodIsUndefined) {
    struct Case {
        const char* text;
        const char* stoppedBy;
        Kind kind = Kind::UndefinedCartesian;
    };
    const Case cases[] = {
        {"UTM; Zone 17; Datum NAD28; Units METERS; Parameters", "Datum NAD28 is not known."},
        {"UTM; Zone 17; Datum NAD27; Spheroid GRS1980; Units METERS; Parameters",
         "Spheroid GRS1980 is not that of the datum NAD27."},
        {"UTM; Zone 17; Units METERS; Parameters", "There is neither Datum nor Spheroid."},
        {"UTM; Zone 61; Datum NAD27; Units METERS; Parameters", "Zone 61 is none of UTM."},
        {"UTM; Zone 17; Datum NAD27; Units DD; Parameters", "Units DD cannot be those of Utm."},
        {"UTM; Zone 17; Datum NAD27; Units 0.3048; Parameters",
         "Units 0.3048 cannot be those of Utm."},
        {"UTM; Zone 17; Datum NAD27; Units METERS", "The text ends before Parameters."},
        {"UTM; Zone 17; Datum NAD27; Units METERS; Quadrant NE; Parameters",
         "The keyword Quadrant is not known."},
        {"UTM; Zone 17; Zone 18; Datum NAD27; Units METERS; Parameters",
         "\"ZONE\" is there twice."},
        {"UTM; Zone 17; Datum NAD27; Units METERS; Yshift far; Parameters",
         "Yshift FAR is no number."},
        {"BIPOLAR; Datum NAD27; Units METERS; Parameters", "Projection BIPOLAR is not known."},
        {"STATEPLANE; Fipszone 2501; Datum NAD83; Units METERS; Parameters",
         "Datum NAD83 has no state plane zone of Fipszone 2501."},
        {"STATEPLANE; Zone 3101; Fipszone 102; Datum NAD83; Units METERS; Parameters",
         "Zone 3101 is not the same as the Fipszone."},
        {"POLYCONIC; Datum NAD27; Units METERS; Parameters; -96 0 0; 30 0 0; 0",
         "Projection POLYCONIC has 3 parameters, which is not as many as it takes."},
        {"POLYCONIC; Datum NAD27; Units METERS; Parameters; 30 0 0 /* latitude of origin; "
         "-96 0 0 /* central meridian; 0 /* easting; 0 /* northing",
         "The parameter 30 0 0 is not where it belongs: latitude of origin."},
        {"POLYCONIC; Datum NAD27; Units METERS; Parameters; -96 0 0 /* meridian; 30 0 0 /* "
         "latitude; "
         "0 /* easting; 5",
         "The parameter 5 has no comment."},
        {"POLYCONIC; Datum NAD27; Units METERS; Parameters; -96 0 0; 30 60 0; 0; 0",
         "The parameter \"30 60 0\" is no number and no angle."},
        {"POLYCONIC; Datum NAD27; Units METERS; Parameters; -96 0 0; 96 0 0; 0; 0",
         "The parameter 96 0 0 cannot be used."},
        {"POLYCONIC; Datum NAD27; Units FEET; Parameters; -96 0 0; 30 0 0; 2000000; 0",
         "The parameter 2000000 cannot be used."},
        {"STEREOGRAPHIC; Datum NAD27; Units METERS; Parameters; -96 0 0; 30 0 0; 1; 0; 0",
         "The parameter -96 0 0 of STEREOGRAPHIC has no comment that says what it is."},
        {"SINUSOIDAL; Datum NAD27; Units METERS; Parameters; 6370997; -96 0 0; 0; 0",
         "The radius of a sphere does not go with the datum NAD27."},
        {"GEOGRAPHIC; Datum ATLANTIS; Units DD; Parameters", "Datum ATLANTIS is not known.",
         Kind::UndefinedGeographic},
        {"GEOGRAPHIC; Datum NAD27; Units DD; Xshift 5; Parameters",
         "Xshift 5 does not go with GEOGRAPHIC.", Kind::UndefinedGeographic},
        {"GEOGRAPHIC; Datum NAD27; Units METERS; Parameters",
         "Units METERS cannot be those of Geographic.", Kind::UndefinedGeographic},
    };
    for (const Case& each : cases) {
        const ReferenceSystem system = made(each.text);
        EXPECT_EQ(system.stoppedBy, each.stoppedBy) << each.text;
        EXPECT_EQ(system.kind, each.kind) << each.text;
        EXPECT_EQ(system.epsg, 0);
        EXPECT_TRUE(system.wkt1.empty() && system.wkt2.empty());
        EXPECT_EQ(system.text, lines(each.text));
        EXPECT_NE(system.description.find(each.stoppedBy), std::string::npos);
        EXPECT_FALSE(kSystems.toWgs84(system));
    }
    EXPECT_EQ(kSystems.fromText(" \n").stoppedBy, "There is no projection text.");
}

// No part of a text passes for another system than the whole, and no bytes do harm.
TEST(Systems, DamagedTexts) {
    std::string asInFiles;  // lines of 80 columns and their continuations
    for (const std::string& text : {lines(kUtm), lines(kAlbers)}) {
        asInFiles.clear();
        for (std::size_t at = 0; at < text.size(); at = text.find('\n', at) + 1) {
            std::string line = text.substr(at, text.find('\n', at) - at);
            line.resize(80, ' ');
            asInFiles += line + "\r\n~\r\n";
        }
        const ReferenceSystem whole = kSystems.fromText(text);
        ASSERT_NE(whole.epsg, 0);
        EXPECT_EQ(kSystems.fromText(asInFiles).epsg, whole.epsg);
        for (std::size_t length = 0; length < text.size(); ++length) {
            const ReferenceSystem part = kSystems.fromText(text.substr(0, length));
            if (part.defined()) {
                EXPECT_EQ(part.epsg, whole.epsg) << text.substr(0, length);
            }
        }
        std::mt19937 random(1);
        for (int round = 0; round < 20000; ++round) {
            std::string damaged = text;
            for (unsigned count = 1 + random() % 4; count > 0; --count) {
                damaged[random() % damaged.size()] = static_cast<char>(random() % 256);
            }
            const Meaning meaning = understand(parseProjectionText(damaged));
            EXPECT_LT(meaning.stop.size(), 300U);
            for (const char letter : meaning.stop)
                EXPECT_GE(static_cast<unsigned char>(letter), ' ');
        }
    }
    EXPECT_FALSE(kSystems.fromText(std::string(1'000'000, '\n') + "Projection UTM").defined());
    EXPECT_LT(kSystems.fromText("Datum " + std::string(1'000'000, 'x')).stoppedBy.size(), 300U);
}

TEST(Systems, ByHand) {
    const ReferenceSystem lambert = kSystems.byHand("epsg:2154");
    EXPECT_EQ(lambert.epsg, 2154);
    EXPECT_EQ(lambert.description, "RGF93 v1 / Lambert-93 (EPSG:2154), metres");
    EXPECT_EQ(lambert.kind, Kind::Projected);
    const ReferenceSystem paris = kSystems.byHand("EPSG:4807");
    EXPECT_EQ(paris.kind, Kind::Geographic);
    EXPECT_NEAR(paris.perUnit, 0.9, 1e-12);
    // Longitude comes first whatever the registry says of the axes, and a grad is 0.9 degrees.
    double pairs[] = {0, 52};
    kSystems.toWgs84(paris)(pairs);
    EXPECT_NEAR(pairs[0], 2.337, 0.001);
    EXPECT_NEAR(pairs[1], 46.8, 0.001);
    for (const char* wrong :
         {"", "4326", "EPSG:", "EPSG:0", "EPSG:-1", "EPSG:4326x", "EPSG:99999999999", "EPSG:999999",
          "EPSG:5773", "EPSG:4979", "EPSG:4978", "EPSGS:4326"}) {
        const ReferenceSystem system = kSystems.byHand(wrong);
        EXPECT_FALSE(system.defined()) << wrong;
        EXPECT_FALSE(system.stoppedBy.empty()) << wrong;
    }
}

}  // namespace
}  // namespace crs
