// Ten of the eleven symbol-set sections: one flow, and a table of what differs.
#include "host/qxbase.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "symbols/sections.h"
#include "symbols/symbol_record.h"

namespace intake {

namespace {

struct Version {
    int32_t recordBytes;
    std::array<LineLayout, 6> lines;  // a line without fields ends the list

    static constexpr bool used(const LineLayout& line) {
        return line[0].kind != FieldRun::Kind::kNone;
    }
};

// clang-format off

// Line sets. The name shares words 12 to 14 with the first three fields of line 2, which hold its
// bytes as integers: they are read, and the name takes their place.
constexpr Version kCln = {52, {{{integers(4, 1), integers(1, 13), name(9)},
                                {reals(4, 5)}}}};
constexpr Version kCl6 = {80, {{{integers(6, 1), name(11)},
                                {checked(3), integers(1, 15), integers(2, 19)},
                                {reals(4, 7)},
                                {reals(3, 16)}}}};
constexpr Version kCl7 = {92, {{{integers(6, 1), name(11)},
                                {checked(3), integers(1, 15), integers(2, 19)},
                                {reals(4, 7)},
                                {reals(3, 16)},
                                {reals(3, 21)}}}};
// Marker sets.
constexpr Version kCmk = {28, {{{integers(5, 1)},
                                {reals(2, 6)}}}};
constexpr Version kCm6 = {56, {{{integers(7, 1)},
                                {integers(2, 13)},
                                {reals(5, 8)}}}};
constexpr Version kCm7 = {80, {{{integers(7, 1)},
                                {integers(3, 14), integers(3, 18)},
                                {reals(4, 8)},
                                {reals(2, 12), reals(1, 17)}}}};
// Shade sets.
constexpr Version kCsh = {52, {{{integers(6, 1)},
                                {reals(3, 7)},
                                {reals(4, 10)}}}};
constexpr Version kCs6 = {88, {{{integers(7, 1)},
                                {integers(2, 8), integers(2, 21)},
                                {reals(4, 10)},
                                {reals(4, 14)},
                                {reals(3, 18)}}}};
constexpr Version kCs7 = {116, {{{integers(7, 1)},
                                 {integers(2, 8), integers(2, 21)},
                                 {reals(4, 10)},
                                 {reals(4, 14)},
                                 {reals(3, 18)},
                                 {integers(3, 23), name(26)}}}};
// Text sets; the older forms have a routine of their own.
constexpr Version kCt7 = {88, {{{integers(7, 1)},
                                {reals(4, 8)},
                                {reals(3, 12), integers(2, 15)},
                                {integers(1, 17), integers(4, 19)},
                                {reals(1, 18)}}}};

// clang-format on

// Reads the lines of one symbol, of which the first is at hand.
void readSymbol(Line& line, const Version& version, const Handle& file, SymbolRecord& record) {
    for (const LineLayout& layout : version.lines) {
        if (!Version::used(layout)) break;
        if (&layout != version.lines.data()) IMPLIN(line);
        record.read(line, layout);
    }
    for (const LineLayout& layout : version.lines) record.turn(layout, file);
}

void importSet(const Name& name, const Version& version, Status& status) {
    call(iexist_, name, status);
    if (status == kSuccess) {
        nonftl("%1% already exists", name);
        status = kReported;
        return;
    }
    Handle file{};
    call(icreat_, file, name, version.recordBytes, status);
    if (status != kSuccess) {
        nonftl("Cannot create %1%", name);
        status = kReported;
        return;
    }
    Line line;
    SymbolRecord record;
    for (int32_t number = 1;; ++number) {
        IMPLIN(line);
        if (line.startsWith("EOS")) break;
        readSymbol(line, version, file, record);
        // Its status is not looked at between records, and the end of the section clears it.
        call(iwrite_, file, record.data(), version.recordBytes, number, status);
    }
    call(iclose_, file);
    status = kSuccess;
}

}  // namespace

void IMPCLN(const Name& file, Status& status) { importSet(file, kCln, status); }
void IMPCL6(const Name& file, Status& status) { importSet(file, kCl6, status); }
void IMPCL7(const Name& file, Status& status) { importSet(file, kCl7, status); }
void IMPCMK(const Name& file, Status& status) { importSet(file, kCmk, status); }
void IMPCM6(const Name& file, Status& status) { importSet(file, kCm6, status); }
void IMPCM7(const Name& file, Status& status) { importSet(file, kCm7, status); }
void IMPCSH(const Name& file, Status& status) { importSet(file, kCsh, status); }
void IMPCS6(const Name& file, Status& status) { importSet(file, kCs6, status); }
void IMPCS7(const Name& file, Status& status) { importSet(file, kCs7, status); }
void IMPCT7(const Name& file, Status& status) { importSet(file, kCt7, status); }

}  // namespace intake
