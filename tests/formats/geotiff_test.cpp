// GeoTIFF, read back by libtiff; programs of others read it too (tests/clients).
#include "formats/geotiff/geotiff.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <limits>
#include <map>

#include "crs/proj_systems.h"
#include "formats/geotiff/halving.h"
#include "formats/geotiff/keys.h"
#include "formats/geotiff/plan.h"
#include "tests/formats/formats_test.h"
#include "tests/support/tiff_cells.h"

namespace formats::testing {
namespace {

using geotiff::Keys;
using intake::testing::imagesOf;
using intake::testing::TiffImage;

constexpr double kNone = 200;

// A value that tells its place, in every type; none in a corner.
double valueAt(std::size_t band, int32_t row, int32_t column) {
    if (row < 5 && column < 5) return kNone;
    return static_cast<double>(
        (band * 31 + static_cast<std::size_t>(row) * 7 + static_cast<std::size_t>(column) * 3) %
        200);
}

Raster rasterOf(int32_t columns, int32_t rows, CellType type, std::size_t bands = 1) {
    Raster raster;
    raster.name = "R";
    raster.columns = columns;
    raster.rows = rows;
    raster.type = type;
    raster.noData = kNone;
    raster.classes = !isReal(type);
    raster.cellSize = {2, 3};
    raster.bands.resize(bands);
    raster.read = [=](std::size_t band, int32_t row, std::span<std::byte> cells) {
        withCell(type, [&](auto kind) {
            auto* out = reinterpret_cast<decltype(kind)*>(cells.data());
            for (int32_t column = 0; column < columns; ++column) {
                *out++ = static_cast<decltype(kind)>(valueAt(band, row, column));
            }
        });
    };
    return raster;
}

class GeoTiffTest : public FormatsTest {
  protected:
    std::string written(const Raster& raster, RasterOptions how = {}) {
        Options options;
        options.replace = true;
        options.rasters = how;
        const auto writer = geotiff::Maker().make(path("out.tif"), options);
        EXPECT_EQ(writer->raster(raster), raster.name);
        writer->finish();
        return path("out.tif");
    }
};

// The overview's cell by the one above it, another way than the writer's.
double halfOf(const TiffImage& image, std::size_t band, uint32_t column, uint32_t row, bool mode) {
    std::vector<double> found;
    for (uint32_t y = 2 * row; y < std::min(2 * row + 2, image.rows); ++y) {
        for (uint32_t x = 2 * column; x < std::min(2 * column + 2, image.columns); ++x) {
            if (image.at(x, y, band) != kNone) found.push_back(image.at(x, y, band));
        }
    }
    if (found.empty()) return kNone;
    if (mode) {
        return *std::ranges::max_element(
            found, {}, [&](double each) { return std::ranges::count(found, each); });
    }
    double sum = 0;
    for (const double each : found) sum += each;
    const double mean = sum / static_cast<double>(found.size());
    return image.bits == 32 ? static_cast<float>(mean) : mean;
}

}  // namespace

TEST_F(GeoTiffTest, EveryCellOfEveryTypeAndCompressionIsThere) {
    for (const CellType type : {CellType::kUInt8, CellType::kInt16, CellType::kUInt16,
                                CellType::kInt32, CellType::kFloat32, CellType::kFloat64}) {
        for (const Compression compression :
             {Compression::kDeflate, Compression::kZstd, Compression::kLzw, Compression::kNone}) {
            SCOPED_TRACE(std::to_string(int(type)) + " " + std::to_string(int(compression)));
            const std::size_t bands = type == CellType::kInt16 ? 3 : 1;
            const auto images =
                imagesOf(written(rasterOf(1100, 600, type, bands), {compression, true, 2}));
            ASSERT_EQ(images.size(), 3U);
            ASSERT_EQ(images[0].cells.size(), bands);
            EXPECT_EQ(images[0].bits, 8 * bytesOf(type));
            int wrong = 0;
            for (std::size_t band = 0; band < bands; ++band) {
                for (int32_t row = 0; row < 600; ++row) {
                    for (int32_t column = 0; column < 1100; ++column) {
                        wrong +=
                            images[0].at(static_cast<uint32_t>(column), static_cast<uint32_t>(row),
                                         band) != valueAt(band, row, column);
                    }
                }
                for (std::size_t level = 1; level < images.size(); ++level) {
                    const TiffImage& half = images[level];
                    ASSERT_EQ(half.columns, (images[level - 1].columns + 1) / 2);
                    for (uint32_t row = 0; row < half.rows; ++row) {
                        for (uint32_t column = 0; column < half.columns; ++column) {
                            wrong += half.at(column, row, band) !=
                                     halfOf(images[level - 1], band, column, row, !isReal(type));
                        }
                    }
                }
            }
            EXPECT_EQ(wrong, 0);
        }
    }
}

// Directories from large to small in front of all tiles; tiles of the smallest first, each level
// without a gap in its order. A file is the same whoever compresses it.
TEST_F(GeoTiffTest, IsLaidOutForReadersFromAfar) {
    const Raster raster = rasterOf(2100, 1030, CellType::kFloat32, 2);
    const auto images = imagesOf(written(raster));
    ASSERT_EQ(images.size(), 4U);
    EXPECT_EQ(images.back().columns, 263U);
    uint64_t end = 0;
    for (const TiffImage& each : images) {
        EXPECT_GT(each.offset, end);
        end = each.offset;
    }
    for (std::size_t level = images.size(); level-- > 0;) {
        for (const uint64_t tile : images[level].tiles) {
            EXPECT_GT(tile, end);
            end = tile;
        }
    }
    const std::string bytes = intake::testing::fileBytes(path("out.tif"));
    for (const std::size_t workers : {1U, 3U}) {
        written(raster, {Compression::kDeflate, {}, workers});
        EXPECT_TRUE(intake::testing::fileBytes(path("out.tif")) == bytes) << workers;
    }
    EXPECT_EQ(imagesOf(written(raster, {Compression::kDeflate, false, 0})).size(), 1U);
    EXPECT_EQ(imagesOf(written(rasterOf(2047, 9, CellType::kUInt8))).size(), 1U);
}

TEST(GeoTiff, OverviewsLeaveOutWhatIsNoData) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinite = std::numeric_limits<float>::infinity();
    const struct {
        bool classes;
        std::vector<float> above, below, half;
    } cases[] = {
        {true, {1, 2, 3, 4}, {2, 3, 4, 3}, {2, 3}},  // the first of two that are equally many
        {true, {-9, -9, -9, 5}, {-9, 7, -9, -9}, {7, 5}},
        {true, {1, 2, 8}, {}, {1, 8}},  // the last row and column alone
        {false, {1, 2, -9, 4}, {3, 6, -9, -9}, {3, 4}},
        {false, {-9, -9, nan, 4}, {-9, -9, -9, nan}, {-9, 4}},
        {false, {nan, -9, infinite, 1}, {-9, -9, 1, 1}, {nan, infinite}},
    };
    for (const auto& each : cases) {
        std::vector<float> row(each.half.size());
        geotiff::halve(CellType::kFloat32, each.classes, -9, std::as_bytes(std::span(each.above)),
                       std::as_bytes(std::span(each.below)),
                       std::as_writable_bytes(std::span(row)));
        for (std::size_t at = 0; at < row.size(); ++at) {
            EXPECT_TRUE(row[at] == each.half[at] ||
                        (std::isnan(row[at]) && std::isnan(each.half[at])))
                << row[at] << " for " << each.half[at];
        }
    }
}

TEST(GeoTiff, PlansFollowTheSize) {
    const auto plan = [](int32_t columns, int32_t rows, Compression compression) {
        return geotiff::planOf(rasterOf(columns, rows, CellType::kInt32), {compression, {}, 0});
    };
    EXPECT_FALSE(plan(27000, 27000, Compression::kDeflate).big);
    EXPECT_TRUE(plan(27000, 27000, Compression::kLzw).big);  // which may become larger
    EXPECT_TRUE(plan(30000, 30000, Compression::kDeflate).big);
    EXPECT_EQ(plan(20000, 20000, Compression::kNone).levels.size(), 7U);
    const auto thin = plan(1 << 28, 1, Compression::kDeflate);
    EXPECT_EQ(thin.tile.width, 512);
    EXPECT_EQ(thin.tile.height, 16);
}

// As "1024=1 3076=9001 3082=500000 3073='name'": numbers by key.
std::string words(const Keys& keys) {
    std::string text;
    for (const auto& [key, entry] : keys.entries) {
        text += std::to_string(key) + "=";
        char value[32];
        if (entry.list == 0) std::snprintf(value, sizeof value, "%d", entry.value);
        if (entry.list == 34736) {
            std::snprintf(value, sizeof value, "%.10g", keys.doubles[entry.value]);
        }
        text += entry.list == 34737 ? "'" + keys.texts.substr(entry.value, entry.count - 1U) + "'"
                                    : std::string(value);
        text += ' ';
    }
    return text;
}

TEST(GeoTiff, KeysSayASystemByItsCodeOrItsParts) {
    const struct {
        const char* text;
        const char* keys;
    } cases[] = {
        {"Projection GEOGRAPHIC\nDatum WGS84\nUnits DD\nParameters\n",
         "1024=2 1025=1 1026='WGS 84' 2048=4326 2054=9102 "},
        {"Projection GEOGRAPHIC\nDatum NAD27\nUnits DS\nParameters\n",
         "1024=2 1025=1 1026='NAD27' 2048=32767 2049='NAD27' 2050=6267 2051=8901 2054=9104 "
         "2056=7008 2057=6378206.4 2059=294.9786982 "},
        {"Projection UTM\nZone 17\nDatum NAD27\nUnits METERS\nParameters\n",
         "1024=1 1025=1 1026='NAD27 / UTM zone 17N' 3072=26717 3073='NAD27 / UTM zone 17N' "
         "3076=9001 "},
        {"Projection UTM\nZone 16\nDatum NAD27\nUnits FEET\nParameters\n",
         "1024=1 1025=1 1026='NAD27 / UTM zone 16N' 2048=4267 2054=9102 3072=32767 "
         "3073='NAD27 / UTM zone 16N' 3074=32767 3075=1 3076=9003 3080=-87 3081=0 "
         "3082=1640416.667 3083=0 3092=0.9996 "},
        {"Projection ALBERS\nDatum NONE\nSpheroid CLARKE1866\nUnits 1.5\nParameters\n29 30 0\n"
         "45 30 0\n-96 0 0\n23 0 0\n0\n0\n",
         "1024=1 1025=1 1026='Unknown based on Clarke 1866 ellipsoid / Albers' 2048=32767 "
         "2049='Unknown based on Clarke 1866 ellipsoid' 2050=32767 2051=8901 2054=9102 2056=32767 "
         "2057=6378206.4 2059=294.9786982 3072=32767 "
         "3073='Unknown based on Clarke 1866 ellipsoid / Albers' 3074=32767 3075=11 3076=32767 "
         "3077=0.6666666667 3078=29.5 3079=45.5 3080=-96 3081=23 3082=0 3083=0 "},
        {"Projection LAMBERT_AZIMUTHAL\nUnits METERS\nSpheroid SPHERE\nParameters\n6370997.0\n"
         "-100 0 0\n45 0 0\n10\n20\n",
         nullptr},
        {"Projection NOWHERE|\nDatum caf\xC3\xA9\n",
         "1024=0 1025=1 1026='undefined: Projection NOWHERE?; Datum caf?' "},
        {"", "1024=0 1025=1 1026='undefined' "},
    };
    for (const auto& each : cases) {
        const std::string found =
            words(geotiff::keysOf(crs::ProjSystems().fromText(each.text), false));
        if (each.keys) {
            EXPECT_EQ(found, each.keys) << each.text;
        } else {
            EXPECT_NE(found.find("3075=10 3076=9001 3082=10 3083=20 3088=-100 3089=45 "),
                      std::string::npos)
                << found;
            EXPECT_NE(found.find("2057=6370997 2058=6370997 "), std::string::npos) << found;
        }
    }
    const Keys keys = geotiff::keysOf(crs::ProjSystems().byHand("EPSG:2154"), true);
    EXPECT_EQ(words(keys),
              "1024=1 1025=2 1026='RGF93 v1 / Lambert-93' 3072=2154 "
              "3073='RGF93 v1 / Lambert-93' 3076=9001 ");
    EXPECT_EQ(keys.directory().size(), 4U * 7);
    EXPECT_EQ(keys.directory()[2], 1);  // GeoTIFF 1.1
}

TEST_F(GeoTiffTest, StandsUnderItsNameWhenItIsWhole) {
    const auto make = [&](bool replace) {
        Options options;
        options.replace = replace;
        return geotiff::Maker().make(path("out.tif"), options);
    };
    const Raster raster = rasterOf(3, 2, CellType::kUInt8);
    auto writer = make(false);
    EXPECT_EQ(complaint([&] { writer->finish(); }),
              path("out.tif") + ": there is nothing to write");
    writer = make(false);
    writer->raster(raster);
    writer->begin(layer("R.VAT", GeometryType::kNone, {{"VALUE"}}));
    writer->end();
    writer->begin(layer("S.VAT", GeometryType::kNone));
    writer->end();
    EXPECT_TRUE(writer->text({"log", "text/plain", "", "R", "said"}));
    EXPECT_FALSE(std::filesystem::exists(path("out.tif")));
    EXPECT_NE(complaint([&] { writer->raster(raster); }).find("--bands"), std::string::npos);
    writer->finish();
    EXPECT_EQ(files(),
              (std::vector<std::string>{"out.S.VAT.csv", "out.VAT.csv", "out.log.txt", "out.tif"}));
    EXPECT_EQ(complaint([&] { make(false); }), path("out.tif") + ": File exists");
    std::filesystem::remove(path("out.tif"));
    writer = make(false);
    writer->raster(raster);
    EXPECT_EQ(complaint([&] { writer->begin(layer("R.VAT", GeometryType::kNone)); }),
              path("out.VAT.csv") + ": File exists");
}

// In a process of its own, whose files may not grow beyond 100 kB; and where reading fails midway.
TEST_F(GeoTiffTest, FailuresLeaveNothing) {
    for (const bool cloud : {false, true}) {
        const pid_t child = fork();
        if (child == 0) {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{100'000, 100'000};
            setrlimit(RLIMIT_FSIZE, &limit);
            const std::string said = complaint([&] {
                written(rasterOf(2000, 2000, CellType::kInt32), {Compression::kNone, cloud, 2});
            });
            _exit(said == path("out.tif") + ": File too large" ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        Raster raster = rasterOf(2000, 2000, CellType::kInt32);
        raster.read = [read = raster.read](std::size_t band, int32_t row,
                                           std::span<std::byte> cells) {
            if (row == 1500) throw std::runtime_error("stopped");
            read(band, row, cells);
        };
        EXPECT_EQ(complaint([&] {
                      written(raster, {Compression::kDeflate, cloud, 2});
                  }),
                  "stopped");
        EXPECT_TRUE(files().empty());
    }
}

}  // namespace formats::testing
