#include "crs/proj_parts.h"

#include <charconv>
#include <string_view>

namespace crs {

namespace {

int32_t number(const char* digits) {
    const std::string_view text = digits == nullptr ? "" : digits;
    int32_t code = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code);
    return error == std::errc() && end == text.data() + text.size() ? code : 0;
}

int32_t epsgOf(const Object& object) {
    if (!object || orEmpty(proj_get_id_auth_name(object.get(), 0)) != "EPSG") return 0;
    return number(proj_get_id_code(object.get(), 0));
}

void readBase(PJ_CONTEXT* context, const Object& base, Parts& parts) {
    parts.base = epsgOf(base);
    parts.baseName = orEmpty(proj_get_name(base.get()));
    // Several realizations that go by one name have a code as one datum has.
    Object datum(proj_crs_get_datum(context, base.get()));
    if (!datum) datum.reset(proj_crs_get_datum_ensemble(context, base.get()));
    parts.datum = epsgOf(datum);
    if (datum) parts.datumName = orEmpty(proj_get_name(datum.get()));
    if (const Object spheroid{proj_get_ellipsoid(context, base.get())}) {
        parts.spheroid = epsgOf(spheroid);
        parts.spheroidName = orEmpty(proj_get_name(spheroid.get()));
        proj_ellipsoid_get_parameters(context, spheroid.get(), &parts.semiMajor, nullptr, nullptr,
                                      &parts.inverseFlattening);
    }
    if (const Object meridian{proj_get_prime_meridian(context, base.get())}) {
        double longitude = 0;
        double unit = 0;
        proj_prime_meridian_get_parameters(context, meridian.get(), &longitude, &unit, nullptr);
        parts.primeMeridian = longitude == 0 ? 0 : longitude * unit / kRadiansInDegree;
    }
}

void readConversion(PJ_CONTEXT* context, const Object& conversion, Parts& parts) {
    parts.conversion = orEmpty(proj_get_name(conversion.get()));
    const char *method = nullptr, *authority = nullptr, *code = nullptr;
    proj_coordoperation_get_method_info(context, conversion.get(), &method, &authority, &code);
    parts.methodName = orEmpty(method);
    if (orEmpty(authority) == "EPSG") parts.method = number(code);
    for (const PJ_PARAM_DESCRIPTION& each : parametersOf(context, conversion)) {
        parts.parameters.push_back(
            {number(each.code), orEmpty(each.name), each.value, each.unit_conv_factor});
    }
}

}  // namespace

Parts partsOf(PJ_CONTEXT* context, const PJ* system) {
    Parts parts;
    if (const Object base{proj_crs_get_geodetic_crs(context, system)}) {
        readBase(context, base, parts);
    }
    if (proj_get_type(system) == PJ_TYPE_PROJECTED_CRS) {
        if (const Object conversion{proj_crs_get_coordoperation(context, system)}) {
            readConversion(context, conversion, parts);
        }
    }
    return parts;
}

}  // namespace crs
