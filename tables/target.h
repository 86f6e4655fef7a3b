// Where a section's tables go, and under which names.
#ifndef TABLES_TARGET_H
#define TABLES_TARGET_H

#include <string_view>

#include "host/qxfeat/tables.h"
#include "stream/types.h"

namespace intake {

using TableName = FixedText<QX_TABLE_NAME_LENGTH>;

// Kinds of target as tables see them.
inline constexpr int32_t kTablesOfCoverage = 1;
inline constexpr int32_t kTableAlone = 2;
inline constexpr int32_t kTablesOfTin = 5;

// A table's name, cut at its last "."; the suffix has the "." and is empty where there is none.
struct NameParts {
    std::string_view base;
    std::string_view suffix;
};
NameParts splitTableName(std::string_view name);

struct Target {
    Name directory;  // of the tables
    FixedText<8> prefix;
    TableName name;    // of the coverage, or the base name of the table
    TableName suffix;  // of a table that stands alone
    int32_t kind = 0;

    // The name under which a table of the file is kept: the target's, with the suffix that the
    // table has in the file, or the suffix of the target where that is a table itself.
    TableName tableName(std::string_view nameInFile) const;
};

// Works out the target of a section. A kind that has no tables ends the import with "Bad TYPE code"
// and the routine's name.
Target findTarget(const Name& dataset, int32_t kind, std::string_view routine);

}  // namespace intake

#endif
