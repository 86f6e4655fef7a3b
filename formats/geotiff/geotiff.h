// GeoTIFF 1.1 by libtiff: a file for each raster, with its tables as CSV and its texts beside it.
#ifndef FORMATS_GEOTIFF_GEOTIFF_H
#define FORMATS_GEOTIFF_GEOTIFF_H

#include "formats/writer.h"

namespace formats::geotiff {

// Tiles are 512 cells a side, compressed in several threads. The same calls give the same bytes
// whatever their number. Several bands lie one behind the other. A value that is compressed is
// preceded by the difference to its neighbour, bytes of reals taken apart.
class Maker : public WriterMaker {
  public:
    std::unique_ptr<Writer> make(const std::string& path, const Options& options) const override;
};

}  // namespace formats::geotiff

#endif
