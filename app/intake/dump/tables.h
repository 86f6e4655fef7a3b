// Attribute tables in a dump: the table's line, its records, its metadata.
#ifndef APP_INTAKE_DUMP_TABLES_H
#define APP_INTAKE_DUMP_TABLES_H

#include "app/intake/dump/dump.h"
#include "host/cpp/fixed_text.h"
#include "host/qxfeat/tables.h"

namespace program {

using TableName = qx::FixedText<QX_TABLE_NAME_LENGTH>;

// Where a path leads that is taken for a table's: the INFO directory and the table's name. The
// name of a dataset comes out the same way.
struct TablePlace {
    qx::Name directory;
    TableName name;
};
TablePlace placeOfTable(const std::string& path);

// All tables that belong to the coverage, grid or stack at a path.
void dumpTables(Dump& dump, const std::string& dataset);

}  // namespace program

#endif
