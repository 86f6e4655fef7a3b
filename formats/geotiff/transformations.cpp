#include "formats/geotiff/transformations.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace formats::geotiff {

namespace {

constexpr std::array kTransformations = {
    Transformation{9807, "Transverse Mercator", 1, Origin::kNatural},
    Transformation{9812, "Hotine Oblique Mercator (variant A)", 3, Origin::kCenter},
    Transformation{9804, "Mercator (variant A)", 7, Origin::kNatural},
    Transformation{9805, "Mercator (variant B)", 7, Origin::kNatural},
    Transformation{9802, "Lambert Conic Conformal (2SP)", 8, Origin::kFalse},
    Transformation{9801, "Lambert Conic Conformal (1SP)", 9, Origin::kNatural},
    Transformation{9820, "Lambert Azimuthal Equal Area", 10, Origin::kCenter},
    Transformation{1027, "Lambert Azimuthal Equal Area (Spherical)", 10, Origin::kCenter},
    Transformation{9822, "Albers Equal Area", 11, Origin::kConic},
    Transformation{0, "Azimuthal Equidistant", 12, Origin::kCenter},
    Transformation{0, "Equidistant Conic", 13, Origin::kConic},
    Transformation{0, "Stereographic", 14, Origin::kCenter},
    Transformation{9810, "Polar Stereographic (variant A)", 15, Origin::kPole},
    Transformation{9829, "Polar Stereographic (variant B)", 15, Origin::kPole},
    Transformation{9809, "Oblique Stereographic", 16, Origin::kNatural},
    Transformation{9806, "Cassini-Soldner", 18, Origin::kNatural},
    Transformation{0, "Miller Cylindrical", 20, Origin::kCenter},
    Transformation{9840, "Orthographic", 21, Origin::kCenter},
    Transformation{9818, "American Polyconic", 22, Origin::kNatural},
    Transformation{0, "Robinson", 23, Origin::kCenter},
    Transformation{0, "Sinusoidal", 24, Origin::kCenter},
};

// A parameter and its key for each origin, in the order of Origin.
struct ParameterKeys {
    int32_t code;
    std::array<uint16_t, 5> keys;
};

constexpr std::array kParameters = {
    ParameterKeys{
        8801,
        {kNaturalLatitude, kNaturalLatitude, kNaturalLatitude, kCenterLatitude, kNaturalLatitude}},
    ParameterKeys{8802,
                  {kNaturalLongitude, kNaturalLongitude, kNaturalLongitude, kCenterLongitude,
                   kPoleLongitude}},
    ParameterKeys{8805,
                  {kNaturalScale, kNaturalScale, kNaturalScale, kNaturalScale, kNaturalScale}},
    ParameterKeys{8806,
                  {kFalseEasting, kFalseEasting, kFalseEasting, kFalseEasting, kFalseEasting}},
    ParameterKeys{8807,
                  {kFalseNorthing, kFalseNorthing, kFalseNorthing, kFalseNorthing, kFalseNorthing}},
    ParameterKeys{8811, {0, 0, 0, kCenterLatitude, 0}},
    ParameterKeys{8812, {0, 0, 0, kCenterLongitude, 0}},
    ParameterKeys{8813, {0, 0, 0, kAzimuth, 0}},
    ParameterKeys{8814, {0, 0, 0, kRectifiedAngle, 0}},
    ParameterKeys{8815, {0, 0, 0, kCenterScale, 0}},
    ParameterKeys{8816, {0, 0, 0, kCenterEasting, 0}},
    ParameterKeys{8817, {0, 0, 0, kCenterNorthing, 0}},
    ParameterKeys{8821, {0, kFalseOriginLatitude, kNaturalLatitude, 0, 0}},
    ParameterKeys{8822, {0, kFalseOriginLongitude, kNaturalLongitude, 0, 0}},
    ParameterKeys{8823,
                  {kFirstParallel, kFirstParallel, kFirstParallel, kFirstParallel, kFirstParallel}},
    ParameterKeys{8824, {0, kSecondParallel, kSecondParallel, 0, 0}},
    ParameterKeys{8826, {0, kFalseOriginEasting, kFalseEasting, 0, 0}},
    ParameterKeys{8827, {0, kFalseOriginNorthing, kFalseNorthing, 0, 0}},
    ParameterKeys{8832, {0, 0, 0, 0, kNaturalLatitude}},
    ParameterKeys{8833, {0, 0, 0, 0, kPoleLongitude}},
};

}  // namespace

const Transformation* transformationOf(const crs::Parts& parts) {
    const auto found = std::ranges::find_if(kTransformations, [&](const Transformation& each) {
        return (each.method != 0 && each.method == parts.method) || each.name == parts.methodName;
    });
    return found == kTransformations.end() ? nullptr : &*found;
}

uint16_t keyOf(int32_t parameter, Origin origin) {
    for (const ParameterKeys& each : kParameters) {
        if (each.code == parameter) return each.keys[static_cast<std::size_t>(origin)];
    }
    return 0;
}

}  // namespace formats::geotiff
