// The numbers of the keys of a GeoTIFF and of some of their values.
#ifndef FORMATS_GEOTIFF_KEY_NUMBERS_H
#define FORMATS_GEOTIFF_KEY_NUMBERS_H

#include <cstdint>

namespace formats::geotiff {

enum Key : uint16_t {
    kModelType = 1024,
    kRasterType = 1025,
    kCitation = 1026,

    kGeographicType = 2048,
    kGeographicCitation = 2049,
    kDatum = 2050,
    kPrimeMeridian = 2051,
    kAngularUnits = 2054,
    kAngularUnitSize = 2055,
    kEllipsoid = 2056,
    kSemiMajorAxis = 2057,
    kSemiMinorAxis = 2058,
    kInverseFlattening = 2059,
    kPrimeMeridianLongitude = 2061,

    kProjectedType = 3072,
    kProjectedCitation = 3073,
    kProjection = 3074,
    kTransformation = 3075,
    kLinearUnits = 3076,
    kLinearUnitSize = 3077,
    kFirstParallel = 3078,
    kSecondParallel = 3079,
    kNaturalLongitude = 3080,
    kNaturalLatitude = 3081,
    kFalseEasting = 3082,
    kFalseNorthing = 3083,
    kFalseOriginLongitude = 3084,
    kFalseOriginLatitude = 3085,
    kFalseOriginEasting = 3086,
    kFalseOriginNorthing = 3087,
    kCenterLongitude = 3088,
    kCenterLatitude = 3089,
    kCenterEasting = 3090,
    kCenterNorthing = 3091,
    kNaturalScale = 3092,
    kCenterScale = 3093,
    kAzimuth = 3094,
    kPoleLongitude = 3095,
    kRectifiedAngle = 3096,
};

// The tags whose lists hold the values of keys that are longer than a word.
inline constexpr uint16_t kKeyDoubles = 34736, kKeyTexts = 34737;

inline constexpr uint16_t kUserDefined = 32767;

// Of kModelType and of kRasterType.
inline constexpr uint16_t kModelUndefined = 0, kModelProjected = 1, kModelGeographic = 2;
inline constexpr uint16_t kPixelIsArea = 1, kPixelIsPoint = 2;

// Codes of units.
inline constexpr uint16_t kMetre = 9001, kFoot = 9002, kSurveyFoot = 9003;
inline constexpr uint16_t kDegree = 9102, kArcMinute = 9103, kArcSecond = 9104;
inline constexpr uint16_t kGreenwich = 8901;

}  // namespace formats::geotiff

#endif
