// A tile of cells as it lies in a file.
#ifndef FORMATS_GEOTIFF_TILE_H
#define FORMATS_GEOTIFF_TILE_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "formats/geotiff/tiff.h"
#include "formats/raster.h"

namespace formats::geotiff {

struct TileForm {
    int32_t width = 0;
    int32_t height = 0;
    CellType type = CellType::kInt32;
    Compression compression = Compression::kDeflate;

    std::size_t rowBytes() const { return static_cast<std::size_t>(width) * bytesOf(type); }
    std::size_t bytes() const { return rowBytes() * static_cast<std::size_t>(height); }
};

// The tags that say how tiles are kept.
void describeTiles(const Tiff& tiff, const TileForm& form);

// Encodes by libtiff, in memory; may be called from several threads at once. Throws a
// std::runtime_error if this libtiff lacks the compression.
std::vector<std::byte> encoded(const TileForm& form, std::span<std::byte> cells);

}  // namespace formats::geotiff

#endif
