#include "crs/meaning.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "crs/state_plane.h"

namespace crs {

namespace {

// Thrown inside this file: what is said of a text that stops it.
struct Stop {
    std::string sentence;
};

constexpr std::array<std::string_view, 10> kKeywords = {
    "PROJECTION", "ZONE",   "FIPSZONE", "DATUM",  "SPHEROID",
    "UNITS",      "ZUNITS", "XSHIFT",   "YSHIFT", "PARAMETERS"};

constexpr double kUtmEasting = 500000, kUtmSouthNorthing = 10000000;

// As texts print a keyword: "Fipszone".
std::string printed(std::string_view keyword) {
    std::string out(keyword);
    for (std::size_t index = 1; index < out.size(); ++index) {
        if (out[index] >= 'A' && out[index] <= 'Z') out[index] += 'a' - 'A';
    }
    return out;
}

std::string shortened(std::string_view value) {
    std::string out(value.substr(0, 40));
    for (char& letter : out) {
        if (static_cast<unsigned char>(letter) < ' ' || letter == 0x7f) letter = '?';
    }
    return out;
}

[[noreturn]] void stopAt(std::string_view keyword, std::string_view value, std::string_view why) {
    throw Stop{printed(keyword) + " " + shortened(value) + " " + std::string(why) + "."};
}

class Reader {
  public:
    Reader(const ProjectionText& text, Meaning& meaning) : text_(text), meaning_(meaning) {}

    void read() {
        const std::string_view projection = value("PROJECTION");
        meaning_.geographic = projection == "GEOGRAPHIC";
        meaning_.heightUnits = value("ZUNITS");
        meaning_.xShift = shift("XSHIFT");
        meaning_.yShift = shift("YSHIFT");
        if (!text_.fault.empty()) throw Stop{text_.fault};
        for (const ProjectionText::Entry& entry : text_.entries) {
            if (std::ranges::find(kKeywords, entry.keyword) == kKeywords.end()) {
                throw Stop{"The keyword " + shortened(printed(entry.keyword)) + " is not known."};
            }
        }
        if (projection.empty()) throw Stop{"There is no Projection."};
        if (!text_.hasParameters) throw Stop{"The text ends before Parameters."};
        readBase();
        readUnits(projection);
        if (meaning_.geographic) {
            readGeographic();
        } else if (projection == "UTM") {
            readUtm();
        } else if (projection == "STATEPLANE") {
            readStatePlane();
        } else {
            readProjection(projection);
        }
    }

  private:
    std::string_view value(std::string_view keyword) const {
        const std::string* found = text_.find(keyword);
        return found == nullptr ? std::string_view() : std::string_view(*found);
    }

    double shift(std::string_view keyword) const {
        const std::string_view text = value(keyword);
        const std::optional<double> found = number(text);
        if (!found && !text.empty()) stopAt(keyword, text, "is no number");
        return found.value_or(0);
    }

    void readBase() {
        const std::string_view word = value("DATUM"), round = value("SPHEROID");
        if (!word.empty() && word != "NONE" && word != "UNKNOWN") {
            meaning_.datum = datum(word);
            if (meaning_.datum == nullptr) stopAt("DATUM", word, "is not known");
        }
        if (round.empty() || round == "NONE") {
            if (meaning_.datum != nullptr) return;
            throw Stop{"There is neither Datum nor Spheroid."};
        }
        const Spheroid* const found = spheroid(round);
        if (found == nullptr) stopAt("SPHEROID", round, "is not known");
        meaning_.spheroid = *found;
        if (meaning_.datum != nullptr) {
            const Spheroid* const own = spheroid(meaning_.datum->spheroid);
            if (own == nullptr || std::string_view(own->name) != found->name) {
                stopAt("SPHEROID", round, "is not that of the datum " + std::string(word));
            }
        }
    }

    void readUnits(std::string_view projection) {
        const std::string_view word = value("UNITS");
        if (word.empty()) throw Stop{"There are no Units."};
        const std::optional<Unit> unit = meaning_.geographic ? angleUnit(word) : lengthUnit(word);
        if (!unit) stopAt("UNITS", word, "cannot be those of " + shortened(printed(projection)));
        meaning_.unit = *unit;
    }

    void refuse(std::string_view keyword, std::string_view projection) const {
        const std::string_view found = value(keyword);
        if (!found.empty()) stopAt(keyword, found, "does not go with " + std::string(projection));
    }
    void refuseParameters(std::string_view projection) const {
        if (text_.parameters.empty()) return;
        throw Stop{"The parameter " + shortened(text_.parameters[0].text) + " does not go with " +
                   std::string(projection) + "."};
    }

    void readGeographic() const {
        refuse("ZONE", "GEOGRAPHIC");
        refuse("FIPSZONE", "GEOGRAPHIC");
        refuseParameters("GEOGRAPHIC");
        for (const std::string_view keyword : {"XSHIFT", "YSHIFT"}) {
            if (shift(keyword) != 0) stopAt(keyword, value(keyword), "does not go with GEOGRAPHIC");
        }
    }

    std::optional<int32_t> wholeNumber(std::string_view keyword) const {
        const std::string_view text = value(keyword);
        if (text.empty()) return {};
        const std::optional<double> found = number(text);
        if (!found || *found != std::floor(*found) || std::fabs(*found) > 1e6) {
            stopAt(keyword, text, "is no zone");
        }
        return static_cast<int32_t>(*found);
    }

    // A zone of the southern half is a number below zero, or has the shift of ten million metres
    // that keeps northings there above zero. Where there is no zone, its parameters are the
    // longitude and latitude of a place in it.
    void readUtm() {
        refuse("FIPSZONE", "UTM");
        int32_t zone = 0;
        bool south = false;
        if (const std::optional<int32_t> found = wholeNumber("ZONE")) {
            refuseParameters("UTM with a zone");
            zone = std::abs(*found);
            south = *found < 0;
            if (zone < 1 || zone > 60) stopAt("ZONE", value("ZONE"), "is none of UTM");
        } else {
            constexpr std::array kRoles = {Role::Longitude, Role::Latitude};
            if (text_.parameters.size() != kRoles.size()) throw Stop{"UTM has no Zone."};
            checkComments(kRoles);
            const double longitude = checked(0, Role::Longitude);
            zone = std::clamp(static_cast<int32_t>(std::floor((longitude + 180) / 6)) + 1, 1, 60);
            south = checked(1, Role::Latitude) < 0;
        }
        const double easting = kUtmEasting + meaning_.xShift * meaning_.unit.size;
        const double northing =
            (south ? kUtmSouthNorthing : 0) + meaning_.yShift * meaning_.unit.size;
        // Within what a survey foot rounds; a shift that makes a southern zone is no shift.
        if (std::fabs(northing - kUtmSouthNorthing) < 1e-3) south = true;
        const bool shifted =
            easting != kUtmEasting || std::fabs(northing - (south ? kUtmSouthNorthing : 0)) >= 1e-3;
        meaning_.method = &kTransverseMercator;
        meaning_.title = "UTM zone " + std::to_string(zone) + (south ? "S" : "N");
        if (shifted) meaning_.title += " shifted";
        meaning_.values = {0, 6.0 * zone - 183, 0.9996, easting,
                           shifted ? northing : (south ? kUtmSouthNorthing : 0)};
    }

    void readStatePlane() {
        refuseParameters("STATEPLANE");
        const std::optional<int32_t> fips = wholeNumber("FIPSZONE"), zone = wholeNumber("ZONE");
        if (!fips && !zone) throw Stop{"STATEPLANE has neither Zone nor Fipszone."};
        const StatePlaneZone* const found = fips ? zoneByFips(*fips) : zoneByNumber(*zone);
        const std::string_view keyword = fips ? "FIPSZONE" : "ZONE";
        if (found == nullptr) stopAt(keyword, value(keyword), "is no state plane zone known here");
        if (fips && zone && zoneByNumber(*zone) != found) {
            stopAt("ZONE", value("ZONE"), "is not the same as the Fipszone");
        }
        const int32_t geographic = meaning_.datum == nullptr ? 0 : meaning_.datum->geographic;
        if (geographic == 4267) meaning_.registered = found->nad27;
        if (geographic == 4269) meaning_.registered = found->nad83;
        if (meaning_.registered == 0) {
            stopAt(
                "DATUM", value("DATUM"),
                "has no state plane zone of " + printed(keyword) + " " + shortened(value(keyword)));
        }
    }

    void readProjection(std::string_view keyword) {
        const std::vector<const Projection*> forms = projectionsOf(keyword);
        if (forms.empty()) stopAt("PROJECTION", keyword, "is not known");
        refuse("ZONE", keyword);
        refuse("FIPSZONE", keyword);
        // The first of the forms that fits; where none does, what is wrong with the last is told.
        std::optional<Stop> reason;
        for (const Projection* form : forms) {
            if (form->roles.size() != text_.parameters.size()) continue;
            try {
                checkComments(form->roles);
                if (form->needsComments) requireComments(keyword);
                convert(*form);
                return;
            } catch (const Stop& stop) {
                reason = stop;
            }
        }
        if (reason) throw Stop(*reason);
        stopAt("PROJECTION", keyword,
               "has " + std::to_string(text_.parameters.size()) +
                   " parameters, which is not as many as it takes");
    }

    // Comments need not be there, but what they say must not speak against the order of parameters.
    // One that is missing where others are there is a text that was cut off.
    void checkComments(std::span<const Role> roles) const {
        const auto commented = [](const ProjectionText::Parameter& each) {
            return !each.comment.empty();
        };
        const bool any = std::ranges::any_of(text_.parameters, commented);
        for (std::size_t index = 0; index < roles.size(); ++index) {
            const ProjectionText::Parameter& parameter = text_.parameters[index];
            if (any && !commented(parameter)) {
                throw Stop{"The parameter " + shortened(parameter.text) + " has no comment."};
            }
            const Role said = roleOf(parameter.comment);
            if (said != Role::None && said != roles[index]) {
                throw Stop{"The parameter " + shortened(parameter.text) +
                           " is not where it belongs: " + shortened(parameter.comment) + "."};
            }
        }
    }
    void requireComments(std::string_view keyword) const {
        for (const ProjectionText::Parameter& each : text_.parameters) {
            if (roleOf(each.comment) != Role::None) continue;
            throw Stop{"The parameter " + shortened(each.text) + " of " + std::string(keyword) +
                       " has no comment that says what it is."};
        }
    }

    // A parameter in degrees, metres or as a factor, in the range that it can have.
    double checked(std::size_t index, Role role) const {
        const ProjectionText::Parameter& parameter = text_.parameters[index];
        const double value = parameter.value;
        bool good = !parameter.sexagesimal;
        switch (role) {
            case Role::Longitude:
                good = std::fabs(value) <= 360;
                break;
            case Role::Latitude:
            case Role::FirstParallel:
            case Role::SecondParallel:
                good = std::fabs(value) <= 90;
                break;
            case Role::Scale:
                good = good && value >= 0.1 && value <= 10;
                break;
            case Role::Radius:
                good = good && value >= 6.2e6 && value <= 6.5e6;
                break;
            default:
                good = good && std::fabs(value) <= 1e9;
                break;
        }
        const bool length = role == Role::FalseEasting || role == Role::FalseNorthing;
        if (length && value != 0) {
            // They are in metres, whatever the unit of the coordinates; another would be told.
            const bool metres = parameter.comment.find("meter") != std::string::npos ||
                                parameter.comment.find("metre") != std::string::npos;
            const bool plain = parameter.comment.find('(') == std::string::npos &&
                               parameter.comment.find("feet") == std::string::npos;
            good = good && (metres || (plain && meaning_.unit.size == 1));
        }
        if (!good) {
            throw Stop{"The parameter " + shortened(parameter.text) + " cannot be used" +
                       (parameter.comment.empty() ? "" : ": " + shortened(parameter.comment)) +
                       "."};
        }
        if (role != Role::Longitude) return value;
        return value > 180 ? value - 360 : value < -180 ? value + 360 : value;
    }

    void convert(const Projection& form) {
        std::array<std::optional<double>, 9> given;
        for (std::size_t index = 0; index < form.roles.size(); ++index) {
            const Role role = form.roles[index];
            given[static_cast<std::size_t>(role)] = checked(index, role);
        }
        const auto of = [&](Role role) -> std::optional<double>& {
            return given[static_cast<std::size_t>(role)];
        };
        if (of(Role::Radius)) {
            if (meaning_.datum != nullptr) {
                throw Stop{"The radius of a sphere does not go with the datum " +
                           std::string(value("DATUM")) + "."};
            }
            meaning_.spheroid = {"", "", "sphere", *of(Role::Radius), 0};
        }
        if (!of(Role::SecondParallel)) of(Role::SecondParallel) = of(Role::FirstParallel);
        of(Role::FalseEasting) =
            of(Role::FalseEasting).value_or(0) + meaning_.xShift * meaning_.unit.size;
        of(Role::FalseNorthing) =
            of(Role::FalseNorthing).value_or(0) + meaning_.yShift * meaning_.unit.size;

        const Method* method = form.method;
        const std::optional<double> latitude = of(Role::Latitude),
                                    parallel = of(Role::FirstParallel);
        if (method->code == 9829 && std::fabs(*latitude) == 90) {
            method = &kPolarByScale;
        } else if (method->code == 9805 && *latitude == 0) {
            method = &kMercatorByScale;
        } else if (method->code == 9829 && *latitude == 0) {
            throw Stop{"The latitude of true scale of POLAR is the equator."};
        } else if (method->code == 9802 && parallel == of(Role::SecondParallel) &&
                   parallel == latitude) {
            method = &kLambertOneParallel;
            of(Role::Scale) = 1;
        } else if (parallel && *parallel == -*of(Role::SecondParallel)) {
            throw Stop{"The standard parallels lie on both sides of the equator alike."};
        }
        meaning_.method = method;
        meaning_.title = form.title;
        for (const MethodParameter& parameter : method->parameters) {
            meaning_.values.push_back(parameter.role == Role::None ? parameter.fixed
                                                                   : of(parameter.role).value());
        }
    }

    const ProjectionText& text_;
    Meaning& meaning_;
};

}  // namespace

Meaning understand(const ProjectionText& text) {
    Meaning meaning;
    try {
        Reader(text, meaning).read();
    } catch (const Stop& stop) {
        meaning.stop = stop.sentence;
    }
    return meaning;
}

}  // namespace crs
