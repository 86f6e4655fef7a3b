// The log and the projection of a dataset: texts that are copied as they stand. They differ by
// their end mark and their file.
#include "coverage/sections.h"
#include "host/qxbase/channels.h"
#include "host/qxbase/names.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

namespace {

struct SideText {
    std::string_view endMark;
    int32_t fileCode;
};

constexpr SideText kLog = {"EOL", 31};
constexpr SideText kProjection = {"EOP", 28};

// A record of the text takes two lines of the file. The first column of the second line is a
// filler, whose place is that of the text's column 80.
constexpr std::size_t kSecondLine = 79;
using Record = FixedText<160>;

void copyText(const SideText& text, const Name& dataset, Status& status) {
    Name path;
    Handle channel{};
    call(aname_, dataset, path, text.fileCode);
    call(acreat_, channel, path, status);
    if (status != kSuccess) {
        nonftl("Unable to create %1%.", dataset);
        return;
    }
    // The end mark counts in the first line of a record only.
    for (;;) {
        Record record;
        IMPLIN(record);
        if (record == text.endMark) break;
        const char column80 = record[kSecondLine];
        IMPLIN(std::span<char>(record.data() + kSecondLine, Record::kLength - kSecondLine));
        record[kSecondLine] = column80;
        Status written = kSuccess;
        call(awrite_, channel, record, written);
    }
    call(aclose_, channel);
}

void importText(const SideText& text, const Name& dataset, bool skip, Status& status) {
    if (!skip) {
        copyText(text, dataset, status);
        return;
    }
    Line line;
    do {
        IMPLIN(line);
    } while (!(line == text.endMark));
    status = kSuccess;
}

}  // namespace

void IMPLOG(const Name& dataset, const bool& skip, Status& status) {
    importText(kLog, dataset, skip, status);
}

void IMPPRJ(const Name& dataset, const bool& skip, Status& status) {
    importText(kProjection, dataset, skip, status);
}

}  // namespace intake
