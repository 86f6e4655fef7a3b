// Units of coordinates, as projection texts name them.
#ifndef CRS_UNITS_H
#define CRS_UNITS_H

#include <optional>
#include <string>
#include <string_view>

namespace crs {

struct Unit {
    std::string name;    // as reference systems have it
    std::string words;   // for people
    double size = 0;     // in metres or radians
    double perUnit = 0;  // in metres or degrees
};

// METERS, FEET (the survey foot of the United States, 1200/3937 m), or how many units a metre has.
// Nothing for what is not known, or could be read in two ways.
std::optional<Unit> lengthUnit(std::string_view word);

// DD, DM, DS: degrees, minutes or seconds, with decimals.
std::optional<Unit> angleUnit(std::string_view word);

// "metres" for "metre"; for a name that is not one of those above "units of " and the name.
std::string unitWords(std::string_view name);

}  // namespace crs

#endif
