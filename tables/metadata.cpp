#include "host/qxbase/channels.h"
#include "host/qxbase/names.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "tables/sections.h"
#include "tables/target.h"
#include "tables/text_copy.h"

namespace intake {

void IMPMTD(const Name& dataset, Status& status) {
    constexpr int32_t kMetadataCode = 104;
    Name file;
    call(aname_, dataset, file, kMetadataCode);
    call(aexist_, file, status);
    // A document that is there stays, and the section's lines are left to the header scan.
    if (status == kSuccess) return;
    IMPTXF(file, status);
}

void IMPIMD(const Name& dataset, const int32_t& INFKND, Status& status) {
    status = kSuccess;
    const Target target = findTarget(dataset, INFKND, "(IMPIMD)");
    Line line;
    do {
        IMPLIN(line);
        const FixedText<32> nameInFile(line.columns(2, 33));
        const TableName name = target.tableName(nameInFile.view());
        Handle table{};
        int32_t records = 0;
        int32_t bytes = 0;
        Status opened = kSuccess;
        call(infopn_, name, target.directory, target.prefix, 1, table, records, bytes, opened);
        if (opened != kSuccess) {
            nonftl("Table %1% cannot be opened; its metadata is left out.", name);
            passText();
            IMPLIN(line);
            continue;
        }
        Name file;
        call(infxml_nam_, table, file);
        Status exists = kSuccess;
        call(aexist_, file, exists);
        // Where there is a document already the line read below is the first of the body, which
        // ends the section. Stays.
        Status copied = kSuccess;
        if (exists != kSuccess) IMPTXF(file, copied);
        if (copied != kSuccess) status = copied;
        call(infcls_, table);
        IMPLIN(line);
    } while (line.startsWith("IMD ") && INFKND != kTableAlone);
}

}  // namespace intake
