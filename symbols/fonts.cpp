#include "host/qxbase.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "symbols/igl.h"
#include "symbols/sections.h"

namespace intake {

namespace {

constexpr int32_t kFontUnit = 8;
constexpr int32_t kRecordFile = 5;
constexpr Status kNotWritten = -2;
constexpr std::size_t kLongestName = 6;
constexpr std::size_t kRealsPerLine = 4;

using Reals = std::array<float, kFontReals>;

// The directory to work in: the path's own, which is taken below the current one unless it lies
// there already.
Name workingDirectory(const Name& file) {
    Name directory;
    Name current;
    call(edir_, file, directory);
    call(dget_, current);
    const std::string_view inside = directory.view();
    if (inside.size() < current.view().size() || !inside.starts_with(current.view())) {
        Name joined;
        call(ejoin_, current, directory, joined);
        // One that is too long is entered by its own name, which means the same.
        if (!joined.blank()) directory = joined;
    }
    return directory;
}

// False at the end of the section; a record that it cuts short is dropped.
bool readRecord(Reals& reals) {
    Line line;
    for (std::size_t first = 0; first < reals.size(); first += kRealsPerLine) {
        IMPLIN(line);
        if (line.startsWith("EOF")) return false;
        read<"1P,4E14.7">(line, reals[first], reals[first + 1], reals[first + 2], reals[first + 3]);
    }
    return true;
}

// Fills the font's records from the first on.
Status importRecords(const Name& name) {
    Reals reals{};
    for (int32_t record = 1; readRecord(reals); ++record) {
        IGLERR(true);
        IGLWRT(kFontUnit, record, reals);
        const int32_t number = IGLERR(true);
        if (number != 0) {
            nonftl("Error in writing record %1% to %2%/&IGL Error %3%", record, name,
                   IGLTXT(number));
            IGLCLS(kFontUnit, false);
            return kNotWritten;
        }
    }
    IGLCLS(kFontUnit, false);
    return kSuccess;
}

Status importFont(const Name& file, int32_t recordCount) {
    Name name;
    call(ename_, file, name);
    if (name.view().size() > kLongestName) {
        nonftl("%1% is longer than 6 characters - IGL does't allow that!", name);
        return kReported;
    }
    IGLERR(true);
    IGLOPN(kFontUnit, name, kRecordFile, recordCount, kFontReals);
    const int32_t number = IGLERR(true);
    if (number != 0) {
        nonftl("Error in opening %1%:/&IGL Error %2%", file, IGLTXT(number));
        return kReported;
    }
    return importRecords(name);
}

}  // namespace

void IMPFNT(const Name& file, Status& status) {
    IGLINI(0, 1);
    Line line;
    int32_t recordCount = 0;
    IMPLIN(line);
    // The name on the line is not used: that of the path counts.
    read<"A6,I10">(line, ignored, recordCount);
    const Name directory = workingDirectory(file);
    const bool pushed = !directory.blank();
    if (pushed) {
        call(dpush_, directory, status);
        if (status != kSuccess) {
            // The one way out that leaves the layer running. Stays.
            nonftl("%1% is not a usable directory.", directory);
            status = kReported;
            return;
        }
    }
    status = importFont(file, recordCount);
    if (pushed) dpop_();
    IGLEND();
}

}  // namespace intake
