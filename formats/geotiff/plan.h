// How a raster is laid out in a file: its levels, their tiles, and how large it may become.
#ifndef FORMATS_GEOTIFF_PLAN_H
#define FORMATS_GEOTIFF_PLAN_H

#include <cstdint>
#include <vector>

#include "formats/geotiff/tile.h"

namespace formats::geotiff {

struct Level {
    int32_t columns = 0;
    int32_t rows = 0;
    int32_t across = 0;  // tiles
    int32_t down = 0;
};

struct Plan {
    TileForm tile;
    std::vector<Level> levels;  // the whole raster, then its overviews, each half of the one before
    bool big = false;           // a file that may become larger than 4 GB
};

Plan planOf(const Raster& raster, const RasterOptions& options);

}  // namespace formats::geotiff

#endif
