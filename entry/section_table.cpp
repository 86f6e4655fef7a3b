#include "entry/section_table.h"

#include "coverage/sections.h"
#include "plots/sections.h"
#include "raster/sections.h"
#include "stream/section_codes.h"
#include "symbols/sections.h"
#include "tables/sections.h"
#include "tin/sections.h"

namespace intake {

namespace {

// Routines that take the section's precision, and those that take nothing between name and status.
template <auto routine>
void withPrecision(ImportState& import) {
    routine(import.DSNAME, import.SECPRC, import.IMPSTS);
}
template <auto routine>
void plain(ImportState& import) {
    routine(import.DSNAME, import.IMPSTS);
}
void importGrid(ImportState& import) {
    IMPGRD(import.DSNAME, import.INSTCK, import.IMPSKP, import.IMPSTS);
}
void importStack(ImportState& import) {
    IMPSTK(import.DSNAME, import.STKUNT, import.STKEND, import.IMPSTS);
}

// Texts beside the dataset, which go with a grid that is skipped.
template <auto routine>
void sideText(ImportState& import) {
    routine(import.DSNAME, import.IMPSKP, import.IMPSTS);
}

// The oldest form of tables has a routine of its own.
void importTables(ImportState& import) {
    if (import.SECPRC == kOldest) {
        IM1IFO(import.DSNAME, 1, import.INFKND, import.IMPSKP, import.IMPSTS);
    } else {
        IMPIFO(import.DSNAME, import.HDRPRC, import.SECPRC, import.INFKND, import.IMPSKP,
               import.IMPSTS);
    }
    IMPSPX(import.DSNAME, import.IMPSTS);
}
void importTableMetadata(ImportState& import) {
    IMPIMD(import.DSNAME, import.INFKND, import.IMPSTS);
}

constexpr auto kNext = After::kNext;
constexpr auto kEnd = After::kEnd;

constexpr std::array<SectionRow, 47> kRows = {{
    {"ARC", kCoverage, kNext, withPrecision<IMPARC>},
    {"LAB", kCoverage, kNext, withPrecision<IMPLAB>},
    {"PAL", kCoverage, kNext, withPrecision<IMPPAL>},
    {"PFF", kCoverage, kNext, withPrecision<IMPPFF>},
    {"CNT", kCoverage, kNext, withPrecision<IMPCNT>},
    {"TOL", kCoverage, kNext, withPrecision<IMPTOL>},
    {"TXT", kCoverage, kNext, withPrecision<IMPTXT>},
    {"IFO", kInfoDatafile, kNext, importTables},
    {"ASC", kTextFile, kEnd, plain<IMPASC>},
    {"LNK", kCoverage, kNext, withPrecision<IMPLNK>},
    {"ADP", kCoverage, kNext, plain<IMPADP>},
    {"ADI", kCoverage, kNext, plain<IMPADI>},
    {"PLT", kPlotFile, kEnd, plain<IMPPLT>},
    {"ENV", kTin, kNext, plain<IMPENV>},
    {"NXY", kTin, kNext, plain<IMPNXY>},
    {"NZ", kTin, kNext, plain<IMPNZ>},
    {"NOD", kTin, kNext, plain<IMPNOD>},
    {"EDG", kTin, kNext, plain<IMPEDG>},
    {"HUL", kTin, kNext, plain<IMPHUL>},
    {"NID", kTin, kNext, plain<IMPNID>},
    {"LAT", kLattice, kEnd, plain<IMPLAT>},
    {"FNT", kFontFile, kEnd, plain<IMPFNT>},
    {"CLN", kLinesetFile, kEnd, plain<IMPCLN>},
    {"CMK", kMarkersetFile, kEnd, plain<IMPCMK>},
    {"CSH", kShadesetFile, kEnd, plain<IMPCSH>},
    {"CTX", kTextsetFile, kEnd, plain<IMPCTX>},
    {"MAP", kMap, kEnd, plain<IMPMAP>},
    {"SIN", kCoverage, kNext, plain<IMPSIN>},
    {"LOG", kCoverage, kNext, sideText<IMPLOG>},
    {"PRJ", kCoverage, kNext, sideText<IMPPRJ>},
    {"TMK", kTin, kNext, plain<IMTMSK>},
    {"GRD", kGrid, kNext, importGrid},
    {"TX6", kCoverage, kNext, withPrecision<IMPTX6>},
    {"CS6", kShadesetFile, kEnd, plain<IMPCS6>},
    {"CL6", kLinesetFile, kEnd, plain<IMPCL6>},
    {"CM6", kMarkersetFile, kEnd, plain<IMPCM6>},
    {"STK", kStack, kNext, importStack},
    {"CL7", kLinesetFile, kEnd, plain<IMPCL7>},
    {"CM7", kMarkersetFile, kEnd, plain<IMPCM7>},
    {"CT7", kTextsetFile, kEnd, plain<IMPCT7>},
    // Alone among the symbol sets this one goes on to the next section. Stays.
    {"CS7", kShadesetFile, kNext, plain<IMPCS7>},
    {"RXP", kCoverage, kNext, withPrecision<IMPRXP>},
    {"RPL", kCoverage, kNext, withPrecision<IMPRPL>},
    {"EOS", kNoKind, kEnd, nullptr},
    {"TX7", kCoverage, kNext, withPrecision<IMPTX7>},
    {"MTD", kCoverage, kNext, plain<IMPMTD>},
    {"IMD", kCoverage, kNext, importTableMetadata},
}};

constexpr bool inOrderOfCodes() {
    for (std::size_t row = 0; row < kRows.size(); ++row) {
        if (!kSectionCodes[row].keyword.starts_with(kRows[row].code)) return false;
    }
    return true;
}
static_assert(inOrderOfCodes());

}  // namespace

const SectionRow* findSectionRow(int32_t number) {
    for (std::size_t row = 0; row < kRows.size(); ++row) {
        if (kSectionCodes[row].number == number) return &kRows[row];
    }
    return nullptr;
}

const std::array<SectionRow, 47>& sectionTable() { return kRows; }

}  // namespace intake
