#include "crs/units.h"

#include <array>
#include <cmath>
#include <numbers>

#include "crs/projection_text.h"

namespace crs {

namespace {

constexpr double kSurveyFoot = 1200.0 / 3937.0;
constexpr double kFoot = 0.3048;

struct Word {
    std::string_view word;
    const char* name;
    const char* words;
    double perUnit;
};

constexpr std::array kLengths = {
    Word{"METERS", "metre", "metres", 1},
    Word{"METER", "metre", "metres", 1},
    Word{"METRES", "metre", "metres", 1},
    Word{"METRE", "metre", "metres", 1},
    Word{"KILOMETERS", "kilometre", "kilometres", 1000},
    Word{"FEET", "US survey foot", "US survey feet", kSurveyFoot},
    Word{"FOOT", "US survey foot", "US survey feet", kSurveyFoot},
    Word{"FEET_US", "US survey foot", "US survey feet", kSurveyFoot},
    Word{"US_FEET", "US survey foot", "US survey feet", kSurveyFoot},
    Word{"SURVEY_FEET", "US survey foot", "US survey feet", kSurveyFoot},
    Word{"FEET_INTL", "foot", "international feet", kFoot},
    Word{"INTL_FEET", "foot", "international feet", kFoot},
    Word{"INTERNATIONAL_FEET", "foot", "international feet", kFoot},
};

constexpr std::array kAngles = {
    Word{"DD", "degree", "degrees", 1},
    Word{"DEGREES", "degree", "degrees", 1},
    Word{"DM", "arc-minute", "decimal minutes", 1.0 / 60},
    Word{"DS", "arc-second", "decimal seconds", 1.0 / 3600},
    Word{"RADIANS", "radian", "radians", 180 / std::numbers::pi},
};

// A factor has no more digits than it was printed with. Both feet differ from the sixth on.
bool near(double value, double wanted) { return std::fabs(value - wanted) <= 2e-7 * wanted; }

}  // namespace

std::optional<Unit> lengthUnit(std::string_view word) {
    for (const Word& each : kLengths) {
        if (each.word == word) return Unit{each.name, each.words, each.perUnit, each.perUnit};
    }
    const std::optional<double> factor = number(word);
    if (!factor || *factor < 1e-9 || *factor > 1e9) return {};
    // The size of a foot where its inverse belongs could be meant either way.
    if (near(*factor, kFoot) || near(*factor, kSurveyFoot)) return {};
    for (const Word& each : kLengths) {
        if (near(*factor, 1 / each.perUnit)) {
            return Unit{each.name, each.words, each.perUnit, each.perUnit};
        }
    }
    const std::string name = "1/" + std::string(trimmed(word)) + " metre";
    return Unit{name, unitWords(name), 1 / *factor, 1 / *factor};
}

std::optional<Unit> angleUnit(std::string_view word) {
    for (const Word& each : kAngles) {
        if (each.word == word) {
            return Unit{each.name, each.words, each.perUnit * std::numbers::pi / 180, each.perUnit};
        }
    }
    return {};
}

std::string unitWords(std::string_view name) {
    for (const Word& each : kLengths) {
        if (each.name == name) return each.words;
    }
    for (const Word& each : kAngles) {
        if (each.name == name) return each.words;
    }
    return "units of " + std::string(name);
}

}  // namespace crs
