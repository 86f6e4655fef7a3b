#include "tables/target.h"

#include <string>

#include "stream/report.h"

namespace intake {

NameParts splitTableName(std::string_view name) {
    const std::size_t point = name.rfind('.');
    if (point == std::string_view::npos) return {name, {}};
    return {name.substr(0, point), name.substr(point)};
}

TableName Target::tableName(std::string_view nameInFile) const {
    const std::string_view newSuffix =
        kind == kTablesOfCoverage ? splitTableName(nameInFile).suffix : suffix.view();
    return std::string_view(std::string(name.view()).append(newSuffix));
}

Target findTarget(const Name& dataset, int32_t kind, std::string_view routine) {
    Target target;
    target.kind = kind;
    if (kind == kTablesOfCoverage) {
        call(infarc_, dataset, target.directory, target.prefix, target.name);
    } else if (kind == kTableAlone) {
        TableName whole;
        call(infpth_, dataset, target.directory, target.prefix, whole);
        if (whole.blank() && dataset.view().size() > QX_TABLE_NAME_LENGTH) {
            fatal(std::string("Dataset name is too long ").append(routine));
        }
        const NameParts parts = splitTableName(whole.view());
        target.name = parts.base;
        target.suffix = parts.suffix;
    } else {
        fatal(std::string("Bad TYPE code ").append(routine));
    }
    return target;
}

}  // namespace intake
