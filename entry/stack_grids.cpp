#include "entry/stack_grids.h"

#include "host/qxbase.h"
#include "stream/report.h"

namespace intake {

namespace {

// A name out of the file may not lead anywhere.
bool isPlainName(std::string_view name) {
    if (name.empty() || name == "." || name == "..") return false;
    for (const char character : name) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 32 || code == 127 || character == '/') return false;
    }
    return true;
}

}  // namespace

void openScratchList(ImportState& import) {
    if (import.STKUNT != 0) return;
    call(scrnam_, import.STKNAM);
    call(acrnew_, import.STKUNT, import.STKNAM, import.IMPSTS);
    if (import.IMPSTS != kSuccess) fatal("Unable to create %1%.", import.STKNAM);
}

void dropScratchList(ImportState& import, Status& status) {
    call(aclose_, import.STKUNT);
    import.STKUNT = 0;
    call(adelet_, import.STKNAM, status);
}

void goToNextGrid(ImportState& import) {
    Line name;
    int32_t count = 0;
    Status status = kSuccess;
    call(aread_, import.STKUNT, name, count, status);
    if (status != kSuccess) fatal("Stack %1% names no further grid (IMPSUB)", import.targetName);
    Name directory;
    call(edirs_, import.targetName, directory);
    call(ejoins_, directory, name, import.DSNAME);
    const bool fits = directory.view().size() + 1 + name.view().size() <= Name::kLength;
    import.IMPSKP = !fits || !isPlainName(name.view());
}

// What stands under the name of a skipped grid is another dataset, or nothing. A name below the
// scratch list, which is a file, is one where nothing is and nothing can be made.
void turnFromSkippedGrid(ImportState& import) {
    call(ejoins_, import.STKNAM, "skipped", import.DSNAME);
}

}  // namespace intake
