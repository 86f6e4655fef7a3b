#include <algorithm>

#include "host/qxbase/names.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "tables/sections.h"
#include "tables/table.h"

namespace intake {

namespace {

constexpr std::string_view kRoutine = "(IM1INF)";

struct ExternalCode {
    std::string_view suffix;
    int32_t code;
};
constexpr ExternalCode kExternalCodes[] = {
    {".TIC", 3}, {".BND", 7}, {".PAT", 18}, {".AAT", 19}, {".STA", 69}, {".VAT", 71}, {".STK", 77},
};
// The last row, that of a stack, is never reached. Stays.
constexpr std::size_t kRowsSearched = 6;

void makeExternal(const Table& table, const Name& dataset) {
    const std::string_view suffix = splitTableName(table.TBLNAM.view()).suffix.substr(0, 4);
    const auto* end = kExternalCodes + kRowsSearched;
    const auto* row = std::find_if(std::begin(kExternalCodes), end,
                                   [&](const ExternalCode& each) { return each.suffix == suffix; });
    if (row == end) fatal("Illegal coverage filename (IM1INF)");
    Name path;
    call(aname_, dataset, path, row->code);
    Status status = kSuccess;
    call(infxtn_, table.handle, path, status);
    if (status != kSuccess) fatal("Error in externaling file (IM1INF)");
}

void IM1INF(const Name& dataset, const int32_t&, const int32_t& INFKND, Status& status) {
    status = kSuccess;
    const Target target = findTarget(dataset, INFKND, kRoutine);
    Line line;
    for (;;) {
        IMPLIN(line);
        if (line.startsWith("EOS")) break;
        Table table;
        table.routine = kRoutine;
        table.header = readTableHeader(line);
        table.TBLNAM = target.tableName(table.header.name.view());
        if (!defineTable(table, target, status)) return;
        readItems(table, dataset, target, 0);
        table.checkItemCount();
        if (table.header.isExternal() && INFKND != kTableAlone) makeExternal(table, dataset);
        readOlderRecords(table);
        buildIndexes(table);
        call(infcls_, table.handle);
    }
    status = kSuccess;
}

}  // namespace

void IM1IFO(const Name& dataset, const int32_t& one, const int32_t& INFKND, const bool& IMPSKP,
            Status& status) {
    if (!IMPSKP) {
        IM1INF(dataset, one, INFKND, status);
        return;
    }
    Line line;
    do {
        IMPLIN(line);
    } while (!line.startsWith("EOS"));
}

}  // namespace intake
