#include "crs/proj_objects.h"

#include <string_view>

namespace crs {

Object registered(PJ_CONTEXT* context, int32_t code) {
    return Object(proj_create_from_database(context, "EPSG", std::to_string(code).c_str(),
                                            PJ_CATEGORY_CRS, 0, nullptr));
}

double unitOf(PJ_CONTEXT* context, const Object& system) {
    const Object axes(proj_crs_get_coordinate_system(context, system.get()));
    double size = 0;
    if (axes) {
        proj_cs_get_axis_info(context, axes.get(), 0, nullptr, nullptr, nullptr, &size, nullptr,
                              nullptr, nullptr);
    }
    return size;
}

std::vector<PJ_PARAM_DESCRIPTION> parametersOf(PJ_CONTEXT* context, const Object& conversion) {
    std::vector<PJ_PARAM_DESCRIPTION> parameters;
    const int count = proj_coordoperation_get_param_count(context, conversion.get());
    for (int index = 0; index < count; ++index) {
        PJ_PARAM_DESCRIPTION each{};
        const char* category = nullptr;
        if (!proj_coordoperation_get_param(context, conversion.get(), index, &each.name,
                                           &each.auth_name, &each.code, &each.value, nullptr,
                                           &each.unit_conv_factor, &each.unit_name, nullptr,
                                           nullptr, &category)) {
            return {};
        }
        const std::string_view kind = category == nullptr ? "" : category;
        each.unit_type = kind == "linear"    ? PJ_UT_LINEAR
                         : kind == "angular" ? PJ_UT_ANGULAR
                                             : PJ_UT_SCALE;
        parameters.push_back(each);
    }
    return parameters;
}

}  // namespace crs
