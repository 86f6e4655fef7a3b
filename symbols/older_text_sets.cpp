// CTX: three older forms of text symbol under one section code. Which one a file holds is told by
// the lengths of the first symbol's lines.
#include "host/qxbase.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "symbols/sections.h"
#include "symbols/symbol_record.h"

namespace intake {

namespace {

constexpr int32_t kWordBytes = 4;
constexpr std::size_t kSevenIntegers = 70;
constexpr std::size_t kThreeRealsTwoIntegers = 62;

struct Form {
    int32_t recordBytes;
    std::array<LineLayout, 3> lines;
};

constexpr Form kForm44 = {44, {{{integers(5, 1)}, {reals(4, 6)}, {reals(2, 10)}}}};
constexpr Form kForm52 = {52, {{{integers(7, 1)}, {reals(4, 8)}, {reals(2, 12)}}}};
constexpr Form kForm64 = {64, {{{integers(7, 1)}, {reals(4, 8)}, {reals(3, 12), integers(2, 15)}}}};

// Reads the lines of the first symbol, of which the first is at hand, and gives the form.
const Form& readFirst(Line& line, SymbolRecord& record) {
    const bool seven = line.view().size() == kSevenIntegers;
    const Form& begun = seven ? kForm52 : kForm44;
    record.read(line, begun.lines[0]);
    IMPLIN(line);
    record.read(line, begun.lines[1]);
    IMPLIN(line);
    // Whatever the first line was: with one of five integers words 6 to 9 keep line 2. Stays.
    if (line.view().size() == kThreeRealsTwoIntegers) {
        record.read(line, kForm64.lines[2]);
        return kForm64;
    }
    // Into words 10 and 11 in either form, and from there to 12 and 13: with seven integers the
    // last two fields of line 2 are lost. In the first symbol only. Stays.
    record.read(line, kForm44.lines[2]);
    record.copyWord(10, 12);
    record.copyWord(11, 13);
    return begun;
}

void write(const Handle& file, const Form& form, int32_t number, SymbolRecord& record,
           Status& status) {
    record.turnFirst(form.recordBytes / kWordBytes, file);
    call(iwrite_, file, record.data(), form.recordBytes, number, status);
}

}  // namespace

void IMPCTX(const Name& name, Status& status) {
    call(iexist_, name, status);
    if (status == kSuccess) {
        nonftl("%1% already exists", name);
        status = kReported;
        return;
    }
    Line line;
    IMPLIN(line);
    if (line.startsWith("EOS")) {
        // An empty section makes no file.
        status = kSuccess;
        return;
    }
    SymbolRecord record;
    const Form& form = readFirst(line, record);
    Handle file{};
    call(icreat_, file, name, form.recordBytes, status);
    if (status != kSuccess) {
        nonftl("Cannot create %1%", name);
        status = kReported;
        return;
    }
    write(file, form, 1, record, status);
    for (int32_t number = 2;; ++number) {
        IMPLIN(line);
        if (line.startsWith("EOS")) break;
        record.read(line, form.lines[0]);
        for (std::size_t each = 1; each < form.lines.size(); ++each) {
            IMPLIN(line);
            record.read(line, form.lines[each]);
        }
        write(file, form, number, record, status);
    }
    call(iclose_, file);
    status = kSuccess;
}

}  // namespace intake
