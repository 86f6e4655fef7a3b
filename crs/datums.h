// Datums and spheroids, as projection texts name them.
#ifndef CRS_DATUMS_H
#define CRS_DATUMS_H

#include <cstdint>
#include <string_view>

namespace crs {

struct Spheroid {
    std::string_view word;     // of projection texts
    std::string_view another;  // and what else they have for it
    const char* name;          // as reference systems have it
    double semiMajor;          // in metres
    double inverseFlattening;  // 0 for a sphere
};

struct Datum {
    std::string_view word;
    // The letters of the list of datums that mapping agencies share; a text may have one more
    // letter behind them, for the region whose shift is meant: "EUR_M".
    std::string_view letters;
    const char* name;
    int32_t geographic;         // EPSG code of its system of latitudes and longitudes
    std::string_view spheroid;  // that texts name with it
};

// Null for a word that is not known.
const Spheroid* spheroid(std::string_view word);
const Datum* datum(std::string_view word);

}  // namespace crs

#endif
