#include "host/qxfeat/table_names.h"

#include <algorithm>

#include "companions/qxfeat/catalogue.h"
#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"

namespace {

using qx::textArgument;
using qx::textResult;

std::string_view suffixOf(std::string_view name) {
    const std::size_t point = name.rfind('.');
    return point == std::string_view::npos ? std::string_view() : name.substr(point);
}

}  // namespace

void eextsns_(const char* name, char* suffix, int32_t nameLength, int32_t suffixLength) {
    textResult(suffix, suffixLength, suffixOf(textArgument(name, nameLength)));
}

void ruscls_(const char*, const char* table, char* subclass, int32_t* flag, int32_t* status,
             int32_t, int32_t tableLength, int32_t subclassLength) {
    // Regions, routes, sections and annotation.
    constexpr std::string_view kOfSubclasses[] = {".PAT", ".RAT", ".SEC", ".TAT"};
    const std::string_view suffix = suffixOf(textArgument(table, tableLength));
    const bool belongs =
        suffix.size() > 4 && std::find(std::begin(kOfSubclasses), std::end(kOfSubclasses),
                                       suffix.substr(0, 4)) != std::end(kOfSubclasses);
    textResult(subclass, subclassLength, belongs ? suffix.substr(4) : std::string_view());
    *flag = belongs ? 1 : 0;
    *status = 0;
}

void is83workspace_(const char* dataset, int32_t* result, int32_t datasetLength) {
    const auto& catalogue =
        qxfeat::readCatalogue(store::infoDirectory(textArgument(dataset, datasetLength)));
    *result = catalogue.statisticsBytes == qxfeat::Catalogue::kDoubleStatistics ? 1 : 0;
}
