#include "entry/import_driver.h"

#include "coverage/sections.h"
#include "entry/import_state.h"
#include "entry/section_table.h"
#include "entry/stack_grids.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "raster/sections.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "stream/section_codes.h"
#include "stream/section_header.h"
#include "tables/sections.h"
#include "tin/sections.h"

namespace intake {

namespace {

constexpr std::array<int32_t, 3> kPrecisionCodes = {kOldest, kSingle, kDouble};

// Process-wide, so that an import that is unwound leaves its scratch list to be found.
ImportState import;

void setPrecision(bool doublePrecision) { doublePrecision ? c64bit_() : c32bit_(); }

// The precision of the first section decides that of the coverage for the whole file.
void createCoverage() {
    constexpr int32_t kPrecisionSetting = 2;
    constexpr int32_t kDoubleSetting = 2;
    const int32_t setting = call(cval_, kPrecisionSetting);
    setPrecision(import.SECPRC == kDouble);
    Status status = kSuccess;
    call(ccreat_, import.DSNAME, status);
    setPrecision(setting == kDoubleSetting);
    if (status != kSuccess) error("Unable to create coverage.");
}

// The layer is closed again: each section opens what it needs.
void createTin() {
    Status status = kSuccess;
    TINCRE(import.DSNAME, status);
    if (status != kSuccess) error("Unable to create TIN.");
    TINEND();
}

void tellProgress(QxProgressEvent event, std::string_view code, int64_t lines) {
    int64_t bytes = 0;
    call(abytes_, reader.IMPUNT, bytes);
    call(prgtel_, static_cast<int32_t>(event), code, lines, bytes);
}

// False if the kind that was asked for does not go with the file.
bool settleKind(int32_t kind, const SectionRow& row) {
    if (kind != kNoKind && kind != row.kind) {
        nonftl("%1% option is not allowed with importing %2% E00 file", kindLabel(kind),
               kindLabel(row.kind));
        call(aclose_, reader.IMPUNT);
        return false;
    }
    import.IMPKND = kind;
    if (kind == kNoKind) {
        import.IMPKND = row.kind;
        inform(" Creating %1% %2%", kindLabel(row.kind), import.DSNAME);
    }
    tellProgress(QX_KIND_DECIDED, kindLabel(import.IMPKND).view(), 0);
    return true;
}

// The section's routine, with the word to the host before and after it.
void runRoutine(const SectionRow& row) {
    const int64_t start = reader.logicalLines;
    stopIfAsked();
    tellProgress(QX_SECTION_HEADER, row.code, import.SECPRC);
    tellProgress(QX_SECTION_BEGINS, row.code, 0);
    row.run(import);
    tellProgress(QX_SECTION_ENDS, row.code, reader.logicalLines - start);
}

enum class Step { kNext, kFinish };

// ENV works on a surface without files, which carries its counts to the sections behind it.
void restoreEnvironment(const SectionRow& row) {
    constexpr int32_t kOption = 1;
    Handle handle{};
    // Another ENV takes the place of the one before, which nothing looks at any more.
    if (import.TINOPN) TINEND();
    TININI();
    TINSCR(handle, kOption, import.IMPSTS);
    if (import.IMPSTS == kSuccess) runRoutine(row);
    if (import.IMPSTS != kSuccess) fatal("Unable to restore ENV (impsub).");
    import.TINOPN = true;
}

Step dispatchStack(const SectionRow& row) {
    openScratchList(import);
    runRoutine(row);
    if (import.IMPSTS != kSuccess) {
        dropScratchList(import, import.IMPSTS);
        // The name of the list and not of the stack. Stays.
        fatal("Error in importing stack %1%.", import.STKNAM);
    }
    if (import.STKEND) return Step::kFinish;
    import.INSTCK = true;
    return Step::kNext;
}

Step dispatch(const SectionRow& row) {
    if (row.code == "ENV") {
        restoreEnvironment(row);
        return Step::kNext;
    }
    if (row.code == "STK") return dispatchStack(row);
    // Metadata of a skipped grid is passed over by the search for the next section.
    if (import.IMPSKP && (row.code == "MTD" || row.code == "IMD")) return Step::kNext;
    runRoutine(row);
    if (import.INSTCK && import.IMPSKP) turnFromSkippedGrid(import);
    // The metadata of tables ends a file, but for the members of a stack.
    if (row.code == "IMD") return import.INSTCK ? Step::kNext : Step::kFinish;
    return row.after == After::kEnd ? Step::kFinish : Step::kNext;
}

// Reads section after section until one ends the import. False if the kind was refused.
bool runSections(int32_t kind) {
    for (;;) {
        IMPHDR(import.SECNUM, kSingle, kPrecisionCodes, import.SECPRC);
        if (reader.NOHEAD == 1 && import.PRCHNT != 0) {
            import.HDRPRC = import.SECPRC;
            import.SECPRC = import.PRCHNT;
        }
        const SectionRow* row = findSectionRow(import.SECNUM);
        if (!row) fatal("Illegal section header (IMPSUB)");
        if (import.IMPFST) {
            if (!settleKind(kind, *row)) return false;
            import.IMPFST = false;
            if (import.IMPKND == kCoverage) createCoverage();
            if (import.IMPKND == kTin) createTin();
        }
        const bool raster = import.IMPKND == kGrid || import.IMPKND == kStack;
        import.INFKND = raster ? kCoverage : import.IMPKND;
        import.IMPSTS = kSuccess;
        if (import.SECNUM == kEndOfFileSection) return true;
        if (import.INSTCK && import.SECNUM == kGridSection) goToNextGrid(import);
        const bool tableSection = row->code == "IFO" || row->code == "IMD";
        if (import.IMPKND == kInfoDatafile && !tableSection) continue;
        if (dispatch(*row) == Step::kFinish) return true;
    }
}

void finish() {
    finishIndexes(import.DSNAME);
    if (import.INSTCK) {
        // Its status replaces that of the last section. Stays.
        dropScratchList(import, import.IMPSTS);
    }
    call(aclose_, reader.IMPUNT);
    if (import.IMPSTS != kSuccess) error("Error in importing");
    if (import.TINOPN) {
        TINEND();
        import.TINOPN = false;
    }
}

}  // namespace

void IMPSUB(std::string_view dataset, std::string_view file, const int32_t& kind) {
    if (dataset.size() > QX_DATASET_LENGTH) fatal("Dataset name is too long (IMPSUB)");
    if (qx::trimText(dataset).empty()) fatal("Dataset name is empty (IMPSUB)");
    import.DSNAME = import.targetName = dataset;
    // It may have been planted to have files made elsewhere.
    Status link = kSuccess;
    call(alink_, import.DSNAME, link);
    if (link == kSuccess) fatal("%1% is a symbolic link (IMPSUB)", import.DSNAME);
    reader.IMPNAM = reader.firstVolume = file;
    IMPCLR();
    if (static_cast<uint32_t>(kind) > kHighestKind) fatal("BAD TYPE CODE (IMPSUB)");
    // A path that does not fit is a file that does not open, never another file.
    Status status = kReported;
    if (file.size() <= Name::kLength) call(aopen_, reader.IMPUNT, reader.IMPNAM, status);
    if (status != kSuccess) error("Could not open import file..");
    RDVER(reader.IMPUNT);
    IMPPRC(import.PRCHNT);
    if (runSections(kind)) finish();
}

void rearmImport() {
    rearmRaster();
    import = {};
    reader = {};
    rearmCoverage();
    rearmTables();
    rearmTin();
}

void tellWhereItEnded() { tellProgress(QX_IMPORT_ENDED, reader.IMPNAM.view(), reader.lineNumber); }

void releaseImport() {
    rearmRaster();
    rearmTin();
    Status status = kSuccess;
    if (import.STKUNT != 0) dropScratchList(import, status);
    prgdue_(nullptr);
}

}  // namespace intake
