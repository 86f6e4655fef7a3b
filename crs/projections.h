// The projections that texts name, and how each is said as a conversion of the EPSG registry.
#ifndef CRS_PROJECTIONS_H
#define CRS_PROJECTIONS_H

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "crs/projection_text.h"

namespace crs {

// What a parameter of a text is.
enum class Role {
    None,
    Longitude,
    Latitude,
    FirstParallel,
    SecondParallel,
    Scale,
    FalseEasting,
    FalseNorthing,
    Radius,
};

// What a comment says that its parameter is; None if it does not say it clearly.
Role roleOf(std::string_view comment);

// A parameter of a conversion: its code and name in the registry, and where its value comes from.
struct MethodParameter {
    int32_t code;
    const char* name;
    Role role;
    double fixed = 0;  // of Role::None
};

struct Method {
    const char* name;
    int32_t code;  // 0: the registry does not have it, but libraries know it by its name
    std::span<const MethodParameter> parameters;
};

struct Projection {
    std::string_view keyword;
    std::string_view title;       // for names of systems
    std::span<const Role> roles;  // of the parameters in a text, in their order
    const Method* method;
    // The order is not so well known that it would be believed without comments that agree.
    bool needsComments = false;
};

// Those of a keyword; texts have some in several forms. Empty if it is not known.
std::vector<const Projection*> projectionsOf(std::string_view keyword);

// Methods that take the place of another where a value is a special one.
extern const Method kTransverseMercator;
extern const Method kLambertOneParallel;
extern const Method kMercatorByScale;
extern const Method kPolarByScale;

}  // namespace crs

#endif
