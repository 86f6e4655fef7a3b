// The rectangle that the features of a file lie in.
//
// A feature file keeps it in the words of its header while it is written, so that the extent of a
// coverage costs no reading of features. The corners are in the precision of the file.
#ifndef COMPANIONS_QXFEAT_EXTENT_H
#define COMPANIONS_QXFEAT_EXTENT_H

#include <array>
#include <cstddef>
#include <limits>
#include <span>

#include "companions/store/record_file.h"

namespace qxfeat {

struct Extent {
    double xMin = std::numeric_limits<double>::infinity();
    double yMin = xMin;
    double xMax = -xMin;
    double yMax = -xMin;

    // False as long as no point was taken in; a NaN never is.
    bool known() const { return xMin <= xMax && yMin <= yMax; }
    // Takes in points given as pairs x, y. True if the extent has grown.
    bool include(std::span<const double> pairs);
};

inline constexpr std::size_t kExtentBytes = 4 * sizeof(double);

// The extent as the words of a header; coordinateBytes is that of the file.
std::array<std::byte, kExtentBytes> extentWords(const Extent& extent, int32_t coordinateBytes);
// False if the header holds none.
bool headerExtent(const store::RecordHeader& header, Extent& extent);

}  // namespace qxfeat

#endif
