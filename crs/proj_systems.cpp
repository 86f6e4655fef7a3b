#include "crs/proj_systems.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "crs/proj_build.h"
#include "crs/proj_known.h"
#include "crs/proj_parts.h"

namespace crs {

namespace {

// The plain form of WKT 1, which has the place behind the last one of WKT 2.
constexpr auto kWkt1 = static_cast<PJ_WKT_TYPE>(PJ_WKT2_2019_SIMPLIFIED + 1);

std::string wkt(PJ_CONTEXT* context, PJ* system, PJ_WKT_TYPE type) {
    const char* const options[] = {"MULTILINE=NO", nullptr};
    return orEmpty(proj_as_wkt(context, system, type, options));
}

std::string unitName(PJ_CONTEXT* context, const Object& system) {
    const Object axes(proj_crs_get_coordinate_system(context, system.get()));
    const char* name = nullptr;
    if (axes) {
        proj_cs_get_axis_info(context, axes.get(), 0, nullptr, nullptr, nullptr, nullptr, &name,
                              nullptr, nullptr);
    }
    return orEmpty(name);
}

void define(PJ_CONTEXT* context, PJ* object, ReferenceSystem& system) {
    const PJ_TYPE type = proj_get_type(object);
    system.kind = type == PJ_TYPE_PROJECTED_CRS ? Kind::Projected : Kind::Geographic;
    system.name = orEmpty(proj_get_name(object));
    system.wkt2 = wkt(context, object, PJ_WKT2_2019);
    system.wkt1 = wkt(context, object, kWkt1);
    system.parts = partsOf(context, object);
    system.stoppedBy.clear();
}

void describe(const std::string& unitWords, ReferenceSystem& system) {
    system.description = system.name;
    if (system.epsg != 0) system.description += " (EPSG:" + std::to_string(system.epsg) + ")";
    system.description += ", " + unitWords;
}

ReferenceSystem undefined(Kind kind, std::string reason, std::string_view text) {
    ReferenceSystem system;
    system.kind = kind;
    if (kind == Kind::UndefinedGeographic) system.name = "undefined geographic";
    system.description = system.name + ": " + reason;
    system.stoppedBy = std::move(reason);
    system.text = text;
    return system;
}

constexpr const char* kNoRegistry = "PROJ and its registry cannot make the system.";

}  // namespace

ReferenceSystem ProjSystems::fromText(std::string_view projectionText) const {
    const Meaning meaning = understand(parseProjectionText(projectionText));
    const Kind kind = meaning.geographic ? Kind::UndefinedGeographic : Kind::UndefinedCartesian;
    ReferenceSystem system = undefined(kind, meaning.stop, projectionText);
    if (trimmed(projectionText).empty()) {
        system = undefined(kind, "There is no projection text.", projectionText);
    } else if (meaning.stop.empty()) {
        const Context context;
        Object object = buildSystem(context, meaning);
        if (!object) {
            system = undefined(kind, kNoRegistry, projectionText);
        } else {
            if (meaning.datum != nullptr) {
                if (Object same = knownSystem(context, object, system.epsg))
                    object = std::move(same);
            }
            define(context, object.get(), system);
            system.unitName = meaning.unit.name;
            system.perUnit = meaning.unit.perUnit;
            describe(meaning.unit.words, system);
        }
    }
    system.heightUnits = meaning.heightUnits;
    system.xShift = meaning.xShift;
    system.yShift = meaning.yShift;
    return system;
}

ReferenceSystem ProjSystems::byHand(std::string_view definition) const {
    int32_t code = 0;
    const std::string word = upper(definition);
    const std::string_view digits =
        std::string_view(word).substr(std::min<std::size_t>(5, word.size()));
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), code);
    if (!word.starts_with("EPSG:") || error != std::errc() ||
        end != digits.data() + digits.size() || code <= 0) {
        return undefined(Kind::UndefinedCartesian,
                         "A reference system is given as EPSG: and its code.", definition);
    }
    const Context context;
    const Object object = registered(context, code);
    const PJ_TYPE type = object ? proj_get_type(object.get()) : PJ_TYPE_UNKNOWN;
    if (type != PJ_TYPE_PROJECTED_CRS && type != PJ_TYPE_GEOGRAPHIC_2D_CRS) {
        return undefined(Kind::UndefinedCartesian,
                         word + " is no geographic or projected system in two dimensions.",
                         definition);
    }
    ReferenceSystem system;
    system.epsg = code;
    define(context, object.get(), system);
    system.text = definition;
    const double size = unitOf(context, object);
    system.perUnit = system.kind == Kind::Geographic ? size / kRadiansInDegree : size;
    system.unitName = unitName(context, object);
    describe(unitWords(system.unitName), system);
    return system;
}

ToWgs84 ProjSystems::toWgs84(const ReferenceSystem& system) const {
    if (!system.defined()) return {};
    struct Way {
        Context context;
        Object operation;
    };
    const auto way = std::make_shared<Way>();
    const Object source = system.epsg != 0 ? registered(way->context, system.epsg)
                                           : Object(proj_create(way->context, system.wkt2.c_str()));
    const Object target = registered(way->context, 4326);
    if (!source || !target) return {};
    const Object operation(
        proj_create_crs_to_crs_from_pj(way->context, source.get(), target.get(), nullptr, nullptr));
    if (!operation) return {};
    way->operation.reset(proj_normalize_for_visualization(way->context, operation.get()));
    if (!way->operation) return {};
    return [way](std::span<double> pairs) {
        constexpr std::size_t kStride = 2 * sizeof(double);
        const std::size_t count = pairs.size() / 2;
        proj_trans_generic(way->operation.get(), PJ_FWD, pairs.data(), kStride, count,
                           pairs.data() + 1, kStride, count, nullptr, 0, 0, nullptr, 0, 0);
        for (std::size_t pair = 0; pair < count; ++pair) {
            // One of both alone is no place either.
            if (std::isfinite(pairs[2 * pair]) && std::isfinite(pairs[2 * pair + 1])) continue;
            pairs[2 * pair] = pairs[2 * pair + 1] = HUGE_VAL;
        }
    };
}

}  // namespace crs
