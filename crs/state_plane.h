// The zones of the state plane systems of the United States.
#ifndef CRS_STATE_PLANE_H
#define CRS_STATE_PLANE_H

#include <cstdint>
#include <optional>

namespace crs {

struct StatePlaneZone {
    int32_t fips;   // number of the zone in the federal list
    int32_t zone;   // its older number, 0 where it is not known here
    int32_t nad27;  // EPSG code on NAD27, in survey feet; 0 if it has no such zone
    int32_t nad83;  // EPSG code on NAD83, in metres; 0 if it has no such zone
};

// Null for a number that is not known.
const StatePlaneZone* zoneByFips(int32_t fips);
const StatePlaneZone* zoneByNumber(int32_t zone);

}  // namespace crs

#endif
