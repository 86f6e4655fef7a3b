#include "formats/geotiff/plan.h"

#include <algorithm>

namespace formats::geotiff {

namespace {

constexpr int32_t kTileSide = 512;
constexpr int32_t kLeastSide = 16;                   // tiles have multiples of it
constexpr int32_t kCloudSide = 2048;                 // from here on overviews are worth their room
constexpr int64_t kMostPadding = int64_t{16} << 20;  // cells

int32_t tilesOf(int32_t side, int32_t tileSide) {
    return static_cast<int32_t>((int64_t{side} + tileSide - 1) / tileSide);
}

Level levelOf(int32_t columns, int32_t rows, const TileForm& tile) {
    return {columns, rows, tilesOf(columns, tile.width), tilesOf(rows, tile.height)};
}

// A long and narrow raster would be padding for the most part.
void fitTile(const Raster& raster, TileForm& tile) {
    tile.width = tile.height = kTileSide;
    const Level level = levelOf(raster.columns, raster.rows, tile);
    const int64_t cells = int64_t{raster.columns} * raster.rows;
    const int64_t padded = int64_t{level.across} * level.down * kTileSide * kTileSide;
    if (padded <= 4 * cells + kMostPadding) return;
    tile.width = std::min(kTileSide, tilesOf(raster.columns, kLeastSide) * kLeastSide);
    tile.height = std::min(kTileSide, tilesOf(raster.rows, kLeastSide) * kLeastSide);
}

// What a tile may become, in hundredths of what it is: LZW may make three bytes of two.
int64_t mostPercent(Compression compression) {
    return compression == Compression::kLzw ? 151 : 101;
}

}  // namespace

Plan planOf(const Raster& raster, const RasterOptions& options) {
    Plan plan;
    plan.tile.type = raster.type;
    plan.tile.compression = options.compression;
    fitTile(raster, plan.tile);
    int32_t columns = raster.columns;
    int32_t rows = raster.rows;
    plan.levels.push_back(levelOf(columns, rows, plan.tile));
    const bool cloud = options.cloud.value_or(std::max(columns, rows) >= kCloudSide);
    while (cloud && (columns > kTileSide || rows > kTileSide)) {
        columns = columns / 2 + columns % 2;
        rows = rows / 2 + rows % 2;
        plan.levels.push_back(levelOf(columns, rows, plan.tile));
    }
    constexpr int64_t kBytesInDirectories = 16;  // a tile
    const int64_t tileBytes =
        static_cast<int64_t>(plan.tile.bytes()) * mostPercent(options.compression) / 100 +
        kBytesInDirectories;
    int64_t bytes = 0;
    for (const Level& each : plan.levels) {
        bytes += int64_t{each.across} * each.down * static_cast<int64_t>(raster.bands.size()) *
                 tileBytes;
    }
    constexpr int64_t kMostClassic = (int64_t{4} << 30) - (int64_t{1} << 20);
    plan.big = bytes > kMostClassic;
    return plan;
}

}  // namespace formats::geotiff
