#include "formats/geotiff/keys.h"

#include <cmath>
#include <numbers>

#include "formats/geotiff/transformations.h"

namespace formats::geotiff {

namespace {

constexpr double kRadiansInDegree = std::numbers::pi / 180;

bool isSame(double one, double other) { return std::fabs(one - other) <= 1e-12 * std::fabs(other); }

class Builder {
  public:
    void number(Key key, uint16_t value) { keys_.entries[key] = {0, 1, value}; }
    void real(uint16_t key, double value) {
        keys_.entries[key] = {kKeyDoubles, 1, static_cast<uint16_t>(keys_.doubles.size())};
        keys_.doubles.push_back(value);
    }
    // In ASCII; a bar ends it, so there is none in it.
    void text(Key key, std::string_view text) {
        constexpr std::size_t kMost = 4000;
        const std::size_t start = keys_.texts.size();
        bool blank = true;
        for (const char each : text) {
            if (keys_.texts.size() - start == kMost) break;
            const auto byte = static_cast<unsigned char>(each);
            if (byte >= 0x80 && byte < 0xc0) continue;  // inside a character
            if (each == '\n') {
                keys_.texts += "; ";
            } else if (byte > ' ' || !blank) {
                keys_.texts += byte >= 0x80 || each == '|' ? '?' : byte < ' ' ? ' ' : each;
            }
            blank = byte <= ' ';
        }
        while (keys_.texts.size() > start &&
               (keys_.texts.back() == ' ' || keys_.texts.back() == ';'))
            keys_.texts.pop_back();
        keys_.texts += '|';
        keys_.entries[key] = {kKeyTexts, static_cast<uint16_t>(keys_.texts.size() - start),
                              static_cast<uint16_t>(start)};
    }
    // A code of the registry, which has to be one that keys can hold; or else that it is ours.
    bool code(Key key, int32_t value) {
        const bool known = value >= 1024 && value < kUserDefined - 1;
        number(key, known ? static_cast<uint16_t>(value) : kUserDefined);
        return known;
    }
    void uncoded(const std::string& name) { keys_.uncoded = name; }
    Keys take() { return std::move(keys_); }

  private:
    Keys keys_;
};

// perUnit is in metres.
void addLinearUnits(Builder& keys, double perUnit) {
    constexpr struct {
        uint16_t code;
        double size;
    } kUnits[] = {{kMetre, 1}, {kFoot, 0.3048}, {kSurveyFoot, 1200.0 / 3937}};
    for (const auto& [code, size] : kUnits) {
        if (isSame(perUnit, size)) return keys.number(kLinearUnits, code);
    }
    keys.number(kLinearUnits, kUserDefined);
    keys.real(kLinearUnitSize, perUnit);
}

// perUnit is in degrees.
void addAngularUnits(Builder& keys, double perUnit) {
    constexpr struct {
        uint16_t code;
        double size;
    } kUnits[] = {{kDegree, 1}, {kArcMinute, 1.0 / 60}, {kArcSecond, 1.0 / 3600}};
    for (const auto& [code, size] : kUnits) {
        if (isSame(perUnit, size)) return keys.number(kAngularUnits, code);
    }
    keys.number(kAngularUnits, kUserDefined);
    keys.real(kAngularUnitSize, perUnit * kRadiansInDegree);
}

// Latitudes and longitudes: their code, or what they lie on.
void addBase(Builder& keys, const crs::Parts& parts, int32_t code) {
    if (keys.code(kGeographicType, code)) return;
    keys.text(kGeographicCitation, parts.baseName);
    keys.code(kDatum, parts.datum);
    keys.code(kEllipsoid, parts.spheroid);
    keys.real(kSemiMajorAxis, parts.semiMajor);
    if (parts.inverseFlattening != 0) {
        keys.real(kInverseFlattening, parts.inverseFlattening);
    } else {
        keys.real(kSemiMinorAxis, parts.semiMajor);
    }
    if (parts.primeMeridian == 0) return keys.number(kPrimeMeridian, kGreenwich);
    keys.number(kPrimeMeridian, kUserDefined);
    keys.real(kPrimeMeridianLongitude, parts.primeMeridian);
}

// Angles in degrees, lengths in the unit of the coordinates.
double valueOf(const crs::Parameter& parameter, double perUnit) {
    const std::string_view name = parameter.name;
    const bool length = name.find("asting") != name.npos || name.find("orthing") != name.npos;
    const bool factor = name.find("cale") != name.npos;
    const double unit = length ? perUnit : factor ? 1 : kRadiansInDegree;
    return isSame(parameter.unit, unit) ? parameter.value : parameter.value * parameter.unit / unit;
}

void addConversion(Builder& keys, const crs::ReferenceSystem& system) {
    const crs::Parts& parts = system.parts;
    keys.number(kProjection, kUserDefined);
    const Transformation* const transformation = transformationOf(parts);
    keys.number(kTransformation, transformation ? transformation->code : kUserDefined);
    // Without a code the definition itself is all that there is to be told.
    if (!transformation) {
        keys.uncoded(parts.methodName);
        return keys.text(kProjectedCitation, system.wkt2);
    }
    for (const crs::Parameter& each : parts.parameters) {
        if (const uint16_t key = keyOf(each.code, transformation->origin)) {
            keys.real(key, valueOf(each, system.perUnit));
        }
    }
}

}  // namespace

std::vector<uint16_t> Keys::directory() const {
    constexpr uint16_t kVersion = 1, kRevision = 1, kMinorRevision = 1;
    std::vector<uint16_t> words = {kVersion, kRevision, kMinorRevision,
                                   static_cast<uint16_t>(entries.size())};
    for (const auto& [key, entry] : entries) {
        words.insert(words.end(), {key, entry.list, entry.count, entry.value});
    }
    return words;
}

Keys keysOf(const crs::ReferenceSystem& system, bool points) {
    Builder keys;
    keys.number(kRasterType, points ? kPixelIsPoint : kPixelIsArea);
    if (!system.defined()) {
        keys.number(kModelType, kModelUndefined);
        keys.text(kCitation, system.text.empty() ? system.name : system.name + ": " + system.text);
        return keys.take();
    }
    keys.text(kCitation, system.name);
    if (system.kind == crs::Kind::Geographic) {
        keys.number(kModelType, kModelGeographic);
        addBase(keys, system.parts, system.epsg);
        addAngularUnits(keys, system.perUnit);
        return keys.take();
    }
    keys.number(kModelType, kModelProjected);
    keys.text(kProjectedCitation, system.name);
    addLinearUnits(keys, system.perUnit);
    if (keys.code(kProjectedType, system.epsg)) return keys.take();
    addBase(keys, system.parts, system.parts.base);
    addAngularUnits(keys, 1);
    addConversion(keys, system);
    return keys.take();
}

}  // namespace formats::geotiff
