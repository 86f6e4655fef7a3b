// Rows of half the size, as overviews have them.
#ifndef FORMATS_GEOTIFF_HALVING_H
#define FORMATS_GEOTIFF_HALVING_H

#include <cstddef>
#include <optional>
#include <span>

#include "formats/raster.h"

namespace formats::geotiff {

// Makes a row of cells out of two rows, or of the last one alone (below is empty then). Each cell
// stands for up to four: of classes it is the one that most of them are, the first of those in the
// order of reading; else their mean. Cells without data, and those that are no number, count only
// where there are no others.
void halve(CellType type, bool classes, std::optional<double> noData,
           std::span<const std::byte> above, std::span<const std::byte> below,
           std::span<std::byte> row);

}  // namespace formats::geotiff

#endif
