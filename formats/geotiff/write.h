// A raster as a file.
#ifndef FORMATS_GEOTIFF_WRITE_H
#define FORMATS_GEOTIFF_WRITE_H

#include <string>

#include "formats/raster.h"

namespace formats::geotiff {

// Writes into the file of a path, which is there. All directories stand in front, those of the
// raster and of its overviews from large to small, with the places of their tiles; the tiles stand
// behind, those of the smallest overview first. Memory: a row of tiles, and some tiles for each
// thread. Failures are told as a std::runtime_error that names the target.
void write(const Raster& raster, const RasterOptions& options, const std::string& path,
           const std::string& target);

}  // namespace formats::geotiff

#endif
