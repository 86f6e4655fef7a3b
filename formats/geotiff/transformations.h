// The projections that a GeoTIFF has keys for.
#ifndef FORMATS_GEOTIFF_TRANSFORMATIONS_H
#define FORMATS_GEOTIFF_TRANSFORMATIONS_H

#include <cstdint>

#include "crs/reference_system.h"
#include "formats/geotiff/key_numbers.h"

namespace formats::geotiff {

// Where a projection has its origin, which is what the keys of its parameters depend on.
enum class Origin { kNatural, kFalse, kConic, kCenter, kPole };

struct Transformation {
    int32_t method;    // code of the EPSG registry, 0 if it has none
    const char* name;  // as a reference system has it
    uint16_t code;
    Origin origin;
};

// Null if there is no code for the method.
const Transformation* transformationOf(const crs::Parts& parts);

// The key of a parameter by its code of the registry, or 0.
uint16_t keyOf(int32_t parameter, Origin origin);

}  // namespace formats::geotiff

#endif
