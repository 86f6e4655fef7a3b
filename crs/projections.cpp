#include "crs/projections.h"

#include <array>

namespace crs {

namespace {

using enum Role;

constexpr MethodParameter kEasting{8806, "False easting", FalseEasting};
constexpr MethodParameter kNorthing{8807, "False northing", FalseNorthing};
constexpr MethodParameter kNaturalLatitude{8801, "Latitude of natural origin", Latitude};
constexpr MethodParameter kNaturalLongitude{8802, "Longitude of natural origin", Longitude};
constexpr MethodParameter kNaturalScale{8805, "Scale factor at natural origin", Scale};
constexpr MethodParameter kUnitScale{8805, "Scale factor at natural origin", None, 1};

constexpr std::array kNatural = {kNaturalLatitude, kNaturalLongitude, kEasting, kNorthing};
constexpr std::array kNaturalScaled = {kNaturalLatitude, kNaturalLongitude, kNaturalScale, kEasting,
                                       kNorthing};
constexpr std::array kNaturalTrue = {kNaturalLatitude, kNaturalLongitude, kUnitScale, kEasting,
                                     kNorthing};
constexpr std::array kNoLatitude = {kNaturalLongitude, kEasting, kNorthing};
constexpr std::array kConic = {
    MethodParameter{8821, "Latitude of false origin", Latitude},
    MethodParameter{8822, "Longitude of false origin", Longitude},
    MethodParameter{8823, "Latitude of 1st standard parallel", FirstParallel},
    MethodParameter{8824, "Latitude of 2nd standard parallel", SecondParallel},
    MethodParameter{8826, "Easting at false origin", FalseEasting},
    MethodParameter{8827, "Northing at false origin", FalseNorthing}};
constexpr std::array kEquidistantConic = {
    kNaturalLatitude,
    kNaturalLongitude,
    MethodParameter{8823, "Latitude of 1st standard parallel", FirstParallel},
    MethodParameter{8824, "Latitude of 2nd standard parallel", SecondParallel},
    kEasting,
    kNorthing};
constexpr std::array kTrueParallel = {
    MethodParameter{8823, "Latitude of 1st standard parallel", Latitude}, kNaturalLongitude,
    kEasting, kNorthing};
constexpr std::array kPolar = {MethodParameter{8832, "Latitude of standard parallel", Latitude},
                               MethodParameter{8833, "Longitude of origin", Longitude}, kEasting,
                               kNorthing};

constexpr Method kAlbers{"Albers Equal Area", 9822, kConic};
constexpr Method kLambert{"Lambert Conic Conformal (2SP)", 9802, kConic};
constexpr Method kMercator{"Mercator (variant B)", 9805, kTrueParallel};
constexpr Method kPolarByParallel{"Polar Stereographic (variant B)", 9829, kPolar};
constexpr Method kStereographicTrue{"Stereographic", 0, kNaturalTrue};
constexpr Method kStereographicScaled{"Stereographic", 0, kNaturalScaled};
constexpr Method kLambertAzimuthal{"Lambert Azimuthal Equal Area", 9820, kNatural};
constexpr Method kEquidistant{"Equidistant Conic", 0, kEquidistantConic};
constexpr Method kPolyconic{"American Polyconic", 9818, kNatural};
constexpr Method kSinusoidal{"Sinusoidal", 0, kNoLatitude};
constexpr Method kAzimuthal{"Azimuthal Equidistant", 0, kNatural};
constexpr Method kOrthographic{"Orthographic", 9840, kNatural};
constexpr Method kMiller{"Miller Cylindrical", 0, kNoLatitude};
constexpr Method kRobinson{"Robinson", 0, kNoLatitude};
constexpr Method kMollweide{"Mollweide", 0, kNoLatitude};

constexpr std::array kConicRoles = {FirstParallel, SecondParallel, Longitude,
                                    Latitude,      FalseEasting,   FalseNorthing};
constexpr std::array kOneParallelRoles = {FirstParallel, Longitude, Latitude, FalseEasting,
                                          FalseNorthing};
constexpr std::array kScaledRoles = {Scale, Longitude, Latitude, FalseEasting, FalseNorthing};
constexpr std::array kScaleBehindRoles = {Longitude, Latitude, Scale, FalseEasting, FalseNorthing};
constexpr std::array kPointRoles = {Longitude, Latitude, FalseEasting, FalseNorthing};
constexpr std::array kSphericalPointRoles = {Radius, Longitude, Latitude, FalseEasting,
                                             FalseNorthing};
constexpr std::array kMeridianRoles = {Longitude, FalseEasting, FalseNorthing};
constexpr std::array kSphericalMeridianRoles = {Radius, Longitude, FalseEasting, FalseNorthing};

constexpr std::array kProjections = {
    Projection{"ALBERS", "Albers", kConicRoles, &kAlbers},
    Projection{"LAMBERT", "Lambert conformal conic", kConicRoles, &kLambert},
    Projection{"LAMBERT", "Lambert conformal conic", kOneParallelRoles, &kLambert, true},
    Projection{"LAMBERT", "Lambert conformal conic", kScaledRoles, &kLambertOneParallel, true},
    Projection{"TRANSVERSE", "Transverse Mercator", kScaledRoles, &kTransverseMercator},
    Projection{"TRANSVERSE_MERCATOR", "Transverse Mercator", kScaledRoles, &kTransverseMercator},
    Projection{"MERCATOR", "Mercator", kPointRoles, &kMercator},
    Projection{"POLAR", "Polar stereographic", kPointRoles, &kPolarByParallel},
    Projection{"STEREOGRAPHIC", "Stereographic", kSphericalPointRoles, &kStereographicTrue},
    Projection{"STEREOGRAPHIC", "Stereographic", kScaleBehindRoles, &kStereographicScaled, true},
    Projection{"STEREOGRAPHIC", "Stereographic", kPointRoles, &kStereographicTrue, true},
    Projection{"LAMBERT_AZIMUTHAL", "Lambert azimuthal", kSphericalPointRoles, &kLambertAzimuthal},
    Projection{"LAMBERT_AZIMUTHAL", "Lambert azimuthal", kPointRoles, &kLambertAzimuthal},
    Projection{"EQUIDISTANT", "Equidistant conic", kConicRoles, &kEquidistant},
    Projection{"EQUIDISTANT", "Equidistant conic", kOneParallelRoles, &kEquidistant, true},
    Projection{"EQUIDISTANT_CONIC", "Equidistant conic", kConicRoles, &kEquidistant},
    Projection{"POLYCONIC", "Polyconic", kPointRoles, &kPolyconic},
    Projection{"SINUSOIDAL", "Sinusoidal", kSphericalMeridianRoles, &kSinusoidal},
    Projection{"SINUSOIDAL", "Sinusoidal", kMeridianRoles, &kSinusoidal, true},
    Projection{"AZIMUTHAL", "Azimuthal equidistant", kSphericalPointRoles, &kAzimuthal},
    Projection{"ORTHOGRAPHIC", "Orthographic", kSphericalPointRoles, &kOrthographic},
    Projection{"MILLER", "Miller cylindrical", kSphericalMeridianRoles, &kMiller},
    Projection{"ROBINSON", "Robinson", kSphericalMeridianRoles, &kRobinson},
    Projection{"MOLLWEIDE", "Mollweide", kSphericalMeridianRoles, &kMollweide},
};

struct CommentWord {
    std::string_view word;
    Role role;
};
// The first that is found counts: "scale factor at central meridian" is a scale.
constexpr std::array kCommentWords = {
    CommentWord{"scale factor", Scale},     CommentWord{"easting", FalseEasting},
    CommentWord{"northing", FalseNorthing}, CommentWord{"radius", Radius},
    CommentWord{"longitude", Longitude},    CommentWord{"meridian", Longitude},
    CommentWord{"2nd", SecondParallel},     CommentWord{"second", SecondParallel},
    CommentWord{"true scale", Latitude},    CommentWord{"parallel", FirstParallel},
    CommentWord{"latitude", Latitude},
};

}  // namespace

const Method kTransverseMercator{"Transverse Mercator", 9807, kNaturalScaled};
const Method kLambertOneParallel{"Lambert Conic Conformal (1SP)", 9801, kNaturalScaled};
const Method kMercatorByScale{"Mercator (variant A)", 9804, kNaturalTrue};
const Method kPolarByScale{"Polar Stereographic (variant A)", 9810, kNaturalTrue};

Role roleOf(std::string_view comment) {
    for (const CommentWord& each : kCommentWords) {
        if (comment.find(each.word) != std::string_view::npos) return each.role;
    }
    return None;
}

std::vector<const Projection*> projectionsOf(std::string_view keyword) {
    std::vector<const Projection*> found;
    for (const Projection& each : kProjections) {
        if (each.keyword == keyword) found.push_back(&each);
    }
    return found;
}

}  // namespace crs
