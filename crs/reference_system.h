// What is known of the reference system of a dataset. A plain value: it needs no library.
//
// Coordinates that belong to it are always x then y, which is east then north and longitude then
// latitude, whatever order of axes a text below states.
#ifndef CRS_REFERENCE_SYSTEM_H
#define CRS_REFERENCE_SYSTEM_H

#include <cstdint>
#include <string>
#include <vector>

namespace crs {

enum class Kind {
    UndefinedCartesian,   // nothing is known, or what there is was not wholly understood
    UndefinedGeographic,  // longitudes and latitudes, on a base that is not known
    Geographic,
    Projected,
};

// A number of a conversion. value * unit is in metres, radians or 1.
struct Parameter {
    int32_t code = 0;  // of the EPSG registry, 0 if it has none
    std::string name;
    double value = 0;
    double unit = 1;
};

// What a defined system is made of, for formats that name its parts one by one. Codes are those of
// the EPSG registry, 0 for what it does not have.
struct Parts {
    int32_t base = 0;  // the system of latitudes and longitudes
    std::string baseName;
    int32_t datum = 0;
    std::string datumName;
    int32_t spheroid = 0;
    std::string spheroidName;
    double semiMajor = 0;          // in metres
    double inverseFlattening = 0;  // 0 for a sphere
    double primeMeridian = 0;      // in degrees from Greenwich

    // Of a projected system.
    std::string conversion;  // its name
    int32_t method = 0;
    std::string methodName;
    std::vector<Parameter> parameters;
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

    Parts parts;

    bool defined() const { return kind == Kind::Geographic || kind == Kind::Projected; }
    bool geographic() const {
        return kind == Kind::Geographic || kind == Kind::UndefinedGeographic;
    }
};

}  // namespace crs

#endif
