#include "crs/proj_known.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace crs {

namespace {

bool same(double first, double second, double tolerance) {
    return std::fabs(first - second) <= tolerance;
}

bool isEquivalent(PJ_CONTEXT* context, const Object& first, const Object& second) {
    return first && second &&
           proj_is_equivalent_to_with_ctx(context, first.get(), second.get(),
                                          PJ_COMP_EQUIVALENT_EXCEPT_AXIS_ORDER_GEOGCRS);
}

// Whether two projected systems are the same on the ground: the same base, unit and method, and
// parameters that differ by what printing them in feet or metres rounds. How the registry orders
// and calls the axes does not matter, as coordinates here are always east and north.
bool isSamePlane(PJ_CONTEXT* context, const Object& first, const Object& second) {
    const Object one(proj_crs_get_coordoperation(context, first.get()));
    const Object two(proj_crs_get_coordoperation(context, second.get()));
    if (!one || !two) return false;
    const Object base(proj_crs_get_geodetic_crs(context, first.get()));
    const Object otherBase(proj_crs_get_geodetic_crs(context, second.get()));
    if (!isEquivalent(context, base, otherBase)) return false;
    if (!same(unitOf(context, first), unitOf(context, second), 1e-9)) return false;

    const char *method = nullptr, *otherMethod = nullptr;
    proj_coordoperation_get_method_info(context, one.get(), &method, nullptr, nullptr);
    proj_coordoperation_get_method_info(context, two.get(), &otherMethod, nullptr, nullptr);
    if (method == nullptr || orEmpty(method) != orEmpty(otherMethod)) return false;
    const auto parameters = parametersOf(context, one), others = parametersOf(context, two);
    return parameters.size() == others.size() &&
           std::ranges::all_of(parameters, [&](const PJ_PARAM_DESCRIPTION& each) {
               const auto other = std::ranges::find_if(others, [&](const auto& candidate) {
                   return orEmpty(candidate.code) == orEmpty(each.code);
               });
               // A millimetre, or as far on the ground.
               return other != others.end() && same(each.value * each.unit_conv_factor,
                                                    other->value * other->unit_conv_factor,
                                                    each.unit_type == PJ_UT_LINEAR ? 1e-3 : 1e-10);
           });
}

// Systems around a pole have axes of their own, by which PROJ does not find them.
constexpr int32_t kPolarSystems[] = {3031, 3413, 3976, 3995, 32661, 32761};

}  // namespace

Object knownSystem(PJ_CONTEXT* context, const Object& system, int32_t& code) {
    code = 0;
    const bool plane = proj_get_type(system.get()) == PJ_TYPE_PROJECTED_CRS;
    std::vector<Object> candidates;
    const ObjectList found(proj_identify(context, system.get(), "EPSG", nullptr, nullptr));
    const int count = found ? proj_list_get_count(found.get()) : 0;
    for (int index = 0; index < count; ++index) {
        candidates.emplace_back(proj_list_get(context, found.get(), index));
    }
    if (plane) {
        for (const int32_t each : kPolarSystems) candidates.push_back(registered(context, each));
    }
    for (Object& each : candidates) {
        if (!each || proj_is_deprecated(each.get())) continue;
        if (plane ? !isSamePlane(context, each, system) : !isEquivalent(context, each, system)) {
            continue;
        }
        const std::string digits = orEmpty(proj_get_id_code(each.get(), 0));
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), code);
        if (error == std::errc() && end == digits.data() + digits.size()) return std::move(each);
        code = 0;
    }
    return {};
}

}  // namespace crs
