#include "crs/proj_build.h"

#include <charconv>
#include <cmath>

namespace crs {

namespace {

constexpr const char* kDegree = "degree";

std::string spheroidName(const Spheroid& spheroid) {
    if (spheroid.inverseFlattening != 0) return spheroid.name;
    char radius[32];
    const auto end = std::to_chars(radius, radius + sizeof radius, spheroid.semiMajor).ptr;
    return "sphere of " + std::string(radius, end) + " m";
}

// Latitudes and longitudes on the datum, or on the spheroid alone.
Object base(PJ_CONTEXT* context, const Meaning& meaning) {
    if (meaning.datum != nullptr) return registered(context, meaning.datum->geographic);
    const std::string spheroid = spheroidName(meaning.spheroid);
    const std::string name = "Unknown based on " + spheroid +
                             (meaning.spheroid.inverseFlattening != 0 ? " ellipsoid" : "");
    const Object axes(proj_create_ellipsoidal_2D_cs(context, PJ_ELLPS2D_LONGITUDE_LATITUDE, kDegree,
                                                    kRadiansInDegree));
    return Object(proj_create_geographic_crs(
        context, name.c_str(), name.c_str(), spheroid.c_str(), meaning.spheroid.semiMajor,
        meaning.spheroid.inverseFlattening, "Greenwich", 0, kDegree, kRadiansInDegree, axes.get()));
}

PJ_PARAM_DESCRIPTION described(const char* name, const char* code, double value, Role role) {
    switch (role) {
        case Role::FalseEasting:
        case Role::FalseNorthing:
            return {name, "EPSG", code, value, "metre", 1, PJ_UT_LINEAR};
        case Role::Scale:
        case Role::None:
            return {name, "EPSG", code, value, "unity", 1, PJ_UT_SCALE};
        default:
            return {name, "EPSG", code, value, kDegree, kRadiansInDegree, PJ_UT_ANGULAR};
    }
}

Object conversion(PJ_CONTEXT* context, const Meaning& meaning) {
    const Method& method = *meaning.method;
    std::vector<std::string> codes;
    for (const MethodParameter& each : method.parameters) {
        codes.push_back(std::to_string(each.code));
    }
    std::vector<PJ_PARAM_DESCRIPTION> parameters;
    for (std::size_t index = 0; index < codes.size(); ++index) {
        const MethodParameter& each = method.parameters[index];
        parameters.push_back(
            described(each.name, codes[index].c_str(), meaning.values[index], each.role));
    }
    const std::string code = std::to_string(method.code);
    return Object(proj_create_conversion(context, meaning.title.c_str(), nullptr, nullptr,
                                         method.name, method.code == 0 ? nullptr : "EPSG",
                                         method.code == 0 ? nullptr : code.c_str(),
                                         static_cast<int>(parameters.size()), parameters.data()));
}

Object plane(PJ_CONTEXT* context, const Unit& unit) {
    return Object(proj_create_cartesian_2D_cs(context, PJ_CART2D_EASTING_NORTHING,
                                              unit.name.c_str(), unit.size));
}

Object projected(PJ_CONTEXT* context, const std::string& name, const Object& geographic,
                 const Object& conversion, const Unit& unit) {
    if (!geographic || !conversion) return {};
    return Object(proj_create_projected_crs(context, name.c_str(), geographic.get(),
                                            conversion.get(), plane(context, unit).get()));
}

bool isFalseOrigin(const char* code, bool north) {
    const std::string_view name = code == nullptr ? "" : code;
    return north ? name == "8807" || name == "8817" || name == "8827"
                 : name == "8806" || name == "8816" || name == "8826";
}

// A system of the registry in another unit and with its origin shifted.
Object altered(PJ_CONTEXT* context, const Meaning& meaning) {
    Object system = registered(context, meaning.registered);
    if (!system) return {};
    const Object geographic(proj_crs_get_geodetic_crs(context, system.get()));
    const Object own(proj_crs_get_coordoperation(context, system.get()));
    if (!geographic || !own) return {};
    const bool shifted = meaning.xShift != 0 || meaning.yShift != 0;
    std::string name = orEmpty(proj_get_name(system.get()));
    if (!shifted) {
        // The registry has names like these for zones that it keeps in several units.
        if (std::fabs(unitOf(context, system) - meaning.unit.size) <= 1e-9) return system;
        name += meaning.unit.name == "US survey foot" ? " (ftUS)"
                : meaning.unit.name == "foot"         ? " (ft)"
                : meaning.unit.name == "metre"        ? " (m)"
                                                      : " (" + meaning.unit.name + ")";
        return projected(context, name, geographic, own, meaning.unit);
    }

    std::vector<PJ_PARAM_DESCRIPTION> parameters = parametersOf(context, own);
    for (PJ_PARAM_DESCRIPTION& each : parameters) {
        const double size = meaning.unit.size / each.unit_conv_factor;
        if (isFalseOrigin(each.code, false)) each.value += meaning.xShift * size;
        if (isFalseOrigin(each.code, true)) each.value += meaning.yShift * size;
    }
    const char *method = nullptr, *authority = nullptr, *code = nullptr;
    if (!proj_coordoperation_get_method_info(context, own.get(), &method, &authority, &code)) {
        return {};
    }
    name += " shifted";
    const Object moved(proj_create_conversion(context, name.c_str(), nullptr, nullptr, method,
                                              authority, code, static_cast<int>(parameters.size()),
                                              parameters.data()));
    return projected(context, name, geographic, moved, meaning.unit);
}

}  // namespace

Object buildSystem(PJ_CONTEXT* context, const Meaning& meaning) {
    if (meaning.registered != 0) return altered(context, meaning);
    Object geographic = base(context, meaning);
    if (!geographic) return {};
    if (!meaning.geographic) {
        const std::string name = orEmpty(proj_get_name(geographic.get())) + " / " + meaning.title;
        return projected(context, name, geographic, conversion(context, meaning), meaning.unit);
    }
    if (meaning.unit.perUnit == 1) return geographic;
    return Object(proj_crs_alter_cs_angular_unit(
        context, geographic.get(), meaning.unit.name.c_str(), meaning.unit.size, nullptr, nullptr));
}

}  // namespace crs
