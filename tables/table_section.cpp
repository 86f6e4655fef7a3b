#include "host/qxbase/directories.h"
#include "host/qxbase/names.h"
#include "host/qxfeat/table_names.h"
#include "host/qxgridio/grids.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "tables/sections.h"
#include "tables/table.h"

namespace intake {

namespace {

constexpr std::string_view kRoutine = "(IMPINF)";

struct ExternalCode {
    std::string_view suffix;
    int32_t single;
    int32_t wide;
};
constexpr int32_t kSubclassCode = 91;
constexpr std::string_view kWithSubclass = "PAT";

constexpr ExternalCode SUFTAB[] = {
    {"TIC", 3, 1003}, {"BND", 7, 1007}, {"PAT", 18, 18}, {"AAT", 19, 19}, {"TRN", 30, 30},
    {"ADD", 43, 43},  {"REJ", 45, 45},  {"NAT", 20, 20}, {"SEC", 72, 72}, {"RAT", 73, 73},
    {"STA", 69, 69},  {"VAT", 71, 71},  {"TAT", 76, 76}, {"STK", 77, 77},
};

// Has the records of a table kept in the dataset's file that its suffix stands for. With another
// suffix the table stays in the INFO directory, and nothing is said.
void makeExternal(const Table& table, const Name& dataset, int32_t precision) {
    const std::string_view suffix = splitTableName(table.TBLNAM.view()).suffix;
    if (suffix.size() < 4) return;
    for (const ExternalCode& row : SUFTAB) {
        if (row.suffix != suffix.substr(1, 3)) continue;
        const TableName subclass(suffix.substr(4));
        const bool ofSubclass = row.suffix == kWithSubclass && !subclass.blank();
        const int32_t code = ofSubclass             ? kSubclassCode
                             : precision == kSingle ? row.single
                                                    : row.wide;
        Name path;
        call(fname_, dataset, subclass, path, code);
        Status status = kSuccess;
        call(infxtn_, table.handle, path, status);
        if (status != kSuccess) fatal("Unable to external %1%. (IMPINF)", path);
    }
}

// The statistics mode of a grid's table of statistics; 0 for a target that is no grid.
int32_t findGridMode(const Name& dataset) {
    int32_t isGrid = 0;
    call(grdexi_, dataset, isGrid);
    if (isGrid == 0) return 0;
    int32_t doubleStatistics = 0;
    call(is83workspace_, dataset, doubleStatistics);
    return doubleStatistics != 0 ? 2 : 1;
}

void convertStatistics(const Name& dataset) {
    int32_t flagged = 0;
    Status status = kSuccess;
    call(staqtrue_, dataset, flagged, status);
    // The text names the older form's routine. Stays.
    if (status != kSuccess) fatal("Could not update DF record (IM1INF)");
    if (flagged != 0) call(staconv_, dataset, 0, status);
}

// Where it cannot be made no table can be defined, which tells why.
void makeInfoDirectory(const Target& target) {
    Name workspace;
    Name dummy;
    Name plain;
    Status status = kSuccess;
    call(edir_, target.directory, workspace);
    call(ejoin_, workspace, "DUMMY", dummy);
    call(aname_, dummy, plain, 0);
    call(creift_, plain, status);
}

bool endsSection(const Line& line, int32_t HDRPRC) {
    return line.startsWith("EOI ") || (HDRPRC == kOldest && line.startsWith("EOS "));
}

void IMPINF(const Name& dataset, const int32_t& HDRPRC, const int32_t& SECPRC,
            const int32_t& INFKND, Status& status) {
    status = kSuccess;
    if (INFKND == kTablesOfTin) return;
    const Target target = findTarget(dataset, INFKND, kRoutine);
    const int32_t gridMode = INFKND == kTablesOfCoverage ? findGridMode(dataset) : 0;
    if (INFKND == kTableAlone) makeInfoDirectory(target);
    Line line;
    for (;;) {
        IMPLIN(line);
        if (endsSection(line, HDRPRC)) break;
        Table table;
        table.routine = kRoutine;
        table.header = readTableHeader(line);
        table.TBLNAM = target.tableName(table.header.name.view());
        if (INFKND == kTablesOfCoverage) {
            call(infers_, table.TBLNAM, target.directory, target.prefix, 0, status);
        }
        if (!defineTable(table, target, status)) return;
        readItems(table, dataset, target, gridMode);
        table.checkItemCount();
        if (table.header.isExternal() && INFKND == kTablesOfCoverage) {
            makeExternal(table, dataset, SECPRC);
        }
        // The length of the record text, which the items tell just as well.
        if (HDRPRC == kOldest) IMPLIN(line);
        readRecords(table);
        if (!table.IDXLST.empty()) {
            int32_t records = 0;
            int32_t bytes = 0;
            call(infcls_, table.handle);
            call(infopn_, table.TBLNAM, target.directory, target.prefix, 1, table.handle, records,
                 bytes, status);
            buildIndexes(table);
        }
        call(infcls_, table.handle);
        if (table.statisticsMode == 2) convertStatistics(dataset);
        if (INFKND == kTableAlone) break;
    }
    status = kSuccess;
}

}  // namespace

void IMPIFO(const Name& dataset, const int32_t& HDRPRC, const int32_t& SECPRC,
            const int32_t& INFKND, const bool& IMPSKP, Status& status) {
    if (!IMPSKP) {
        IMPINF(dataset, HDRPRC, SECPRC, INFKND, status);
        return;
    }
    Line line;
    do {
        IMPLIN(line);
    } while (!line.startsWith("EOI") && !(HDRPRC == kOldest && line.startsWith("EOS")));
}

}  // namespace intake
