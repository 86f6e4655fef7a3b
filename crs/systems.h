// Makes reference systems, and what turns their coordinates. Abstract, so that who uses it need not
// be linked with the library that does the work.
#ifndef CRS_SYSTEMS_H
#define CRS_SYSTEMS_H

#include <functional>
#include <span>
#include <string_view>

#include "crs/reference_system.h"

namespace crs {

// Turns pairs x, y of one system into longitude, latitude on WGS 84 in degrees, in place. A pair
// that cannot be turned becomes infinite. Not for several threads at once.
using ToWgs84 = std::function<void(std::span<double> pairs)>;

class Systems {
  public:
    virtual ~Systems() = default;

    // Of a projection text as a dataset keeps it. What is not wholly understood is never guessed:
    // then the system is undefined, and stoppedBy says what stopped it. A datum that the text does
    // not name stays unknown, and such a system has no EPSG code.
    virtual ReferenceSystem fromText(std::string_view projectionText) const = 0;

    // Of a definition by hand: EPSG:n, the code of a geographic or projected system in two
    // dimensions. Undefined, with the reason, if it is not that.
    virtual ReferenceSystem byHand(std::string_view definition) const = 0;

    // Empty if the system is undefined or there is no way. Between datums it takes the most
    // accurate way for which all that it needs is installed; nothing is fetched from a network.
    // Where the datum is unknown, longitudes and latitudes are taken for those of WGS 84.
    virtual ToWgs84 toWgs84(const ReferenceSystem& system) const = 0;
};

}  // namespace crs

#endif
