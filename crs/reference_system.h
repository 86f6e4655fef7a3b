// What coordinates mean: the result of reading a dataset's projection, plain data.
#ifndef CRS_REFERENCE_SYSTEM_H
#define CRS_REFERENCE_SYSTEM_H

#include <cstdint>
#include <string>

namespace crs {

struct ReferenceSystem {
    enum class Kind { kUndefinedCartesian, kUndefinedGeographic, kGeographic, kProjected };

    Kind kind = Kind::kUndefinedCartesian;
    std::string name;
    int32_t epsg = 0;  // 0 where no code is known
    std::string wkt;   // WKT2:2019; empty where undefined
    std::string wkt1;  // the older form of the same, where there is one
};

}  // namespace crs

#endif
