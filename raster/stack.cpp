#include "host/qxbase.h"
#include "host/qxgridio.h"
#include "raster/sections.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"

namespace intake {

namespace {

// Any other kind opens a stack without members.
enum StackKind : int32_t { kOpensWithMembers = 1, kCloses = 2 };

constexpr std::string_view kEndOfStack = "EOK";

// The names go to the scratch list, which is read from its first name on. A list that an earlier
// section left there is gone.
void readMembers(int32_t count, const Handle& scratchList) {
    Status status = kSuccess;
    call(aempty_, scratchList, status);
    Line name;
    for (int32_t member = 0; member < count; ++member) {
        IMPLIN(name);
        call(awrite_, scratchList, name, status);
    }
    call(arewnd_, scratchList, status);
}

// The stack's own list, so that a reader of the stack needs no interchange file.
void storeMembers(const Name& directory, const Handle& scratchList, Status& status) {
    Handle list{};
    call(stkcre_, list, directory, status);
    if (status != kSuccess) return;
    for (;;) {
        Line name;
        int32_t count = 0;
        Status read = kSuccess;
        call(aread_, scratchList, name, count, read);
        if (read != kSuccess) break;
        call(stkadd_, list, name, status);
    }
    call(stkcls_, list);
    Status rewound = kSuccess;
    call(arewnd_, scratchList, rewound);
}

bool makeStack(const Name& dataset, const Handle& scratchList) {
    constexpr int32_t kOwnDirectory = 0;
    Name directory;
    Status status = kSuccess;
    call(aname_, dataset, directory, kOwnDirectory);
    call(dcreat_, directory, status);
    if (status == kSuccess) storeMembers(directory, scratchList, status);
    if (status != kSuccess) {
        nonftl("Unable to create stack %1%.", dataset);
        return false;
    }
    call(creift_, directory, status);
    if (status != kSuccess) nonftl("Unable to create INFO directory.");
    return status == kSuccess;
}

}  // namespace

void IMPSTK(const Name& dataset, const Handle& scratchList, bool& closed, Status& status) {
    Line line;
    int32_t kind = 0;
    int32_t count = 0;
    IMPLIN(line);
    read<"2I10">(line, kind, count);
    status = kReported;
    if (kind == kCloses) {
        closed = true;
    } else {
        closed = false;
        readMembers(kind == kOpensWithMembers ? count : 0, scratchList);
        if (!makeStack(dataset, scratchList)) return;
    }
    IMPLIN(line);
    if (!(line == kEndOfStack)) {
        nonftl("Error in the input file for stack %1%", dataset);
        return;
    }
    status = kSuccess;
}

}  // namespace intake
