// What is known of the reference system of a dataset. A plain value: it needs no library.
//
// Coordinates that belong to it are always x then y, which is east then north and longitude then
// latitude, whatever order of axes a text below states.
#ifndef CRS_REFERENCE_SYSTEM_H
#define CRS_REFERENCE_SYSTEM_H

#include <cstdint>
#include <string>

namespace crs {

enum class Kind {
    UndefinedCartesian,   // nothing is known, or what there is was not wholly understood
    UndefinedGeographic,  // longitudes and latitudes, on a base that is not known
    Geographic,
    Projected,
};

struct ReferenceSystem {
    Kind kind = Kind::UndefinedCartesian;

    // The code of the EPSG registry when the system is equal to that one, else 0.
    int32_t epsg = 0;

    // "NAD27 / UTM zone 17N"; never empty.
    std::string name = "undefined";

    // One line for people: name, code, projection, unit; and for an undefined system why it is.
    std::string description = "undefined: there is no projection text";

    // The definition as WKT 2:2019 and as WKT 1, without line breaks; both empty when undefined.
    // WKT 1 is empty too for what it cannot say.
    std::string wkt2;
    std::string wkt1;

    // The unit of x and y. perUnit is metres, or for geographic coordinates degrees, a unit; 0 when
    // the unit is not known.
    std::string unitName;
    double perUnit = 0;

    // The unit of heights as the text names it ("METERS", "NO"), empty when it does not. It is no
    // part of the definitions.
    std::string heightUnits;

    // Constants that were added to the projected coordinates, in the unit of x and y, before they
    // were stored. Of a system that is defined they are already part of it, as false easting and
    // northing: they are told here for people, and nothing has to be added or taken away.
    double xShift = 0;
    double yShift = 0;

    // Why the system is undefined, as one sentence that names the keyword; empty when it is
    // defined.
    std::string stoppedBy = "There is no projection text.";

    // The projection text as it was found, or the definition given by hand.
    std::string text;

    bool defined() const { return kind == Kind::Geographic || kind == Kind::Projected; }
    bool geographic() const {
        return kind == Kind::Geographic || kind == Kind::UndefinedGeographic;
    }
};

}  // namespace crs

#endif
