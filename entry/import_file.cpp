#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
#include <string_view>
#include <utility>

#include "entry/companions.h"
#include "entry/import_driver.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "host/qxgridio.h"
#include "intakedl.h"
#include "stream/report.h"
#include "stream/types.h"

namespace {

using namespace intake;

constexpr int32_t kRanToItsEnd = 1;
constexpr int32_t kEndedByError = 0;

// Set while an import runs, in whatever thread.
std::atomic_flag importRuns = ATOMIC_FLAG_INIT;

// A message that needs no memory. A host's function may need some, and do without the message.
void tellPlainly(int32_t level, const char* text) {
    try {
        mesrawC(level, text);
    } catch (...) {}
}

// A host whose function calls again for each message is told once.
void refuse() {
    thread_local bool telling = false;
    if (std::exchange(telling, true)) return;
    tellPlainly(QX_NONFATAL, "Another import is running in this process.");
    telling = false;
}

// An exception that is no error of the message service has given no message yet.
void tellException(const std::exception& exception) {
    try {
        intake::fatal("The import ended: %1%", std::string_view(exception.what()));
    } catch (...) {}
}

// An import says so once, however much of its end needs memory.
bool wantOfMemoryTold = false;

void tellWantOfMemory() {
    if (!std::exchange(wantOfMemoryTold, true)) {
        tellPlainly(QX_FATAL, "The import ended: out of memory");
    }
}

// Takes every exception. The message service's own has given its message and has no content.
template <class Work>
int32_t guarded(Work work) {
    try {
        work();
        return kRanToItsEnd;
    } catch (const std::bad_alloc&) {
        tellWantOfMemory();
    } catch (const std::exception& exception) {
        tellException(exception);
    } catch (...) {}
    return kEndedByError;
}

std::string_view textOf(const char* text) { return text ? std::string_view(text) : ""; }

// Routines do not look at what became of their writes. The first that failed is told here, also
// where the import has ended by another error by now.
void tellFailedWrite() {
    FixedText<QX_FAILURE_PATH> path;
    FixedText<QX_FAILURE_PATH> reason;
    Status status = kSuccess;
    call(wrfget_, path, reason, status);
    if (status == kSuccess) error("Could not write %1%: %2%", path, reason);
}

int32_t runImport(const char* interchangePath, const char* datasetName) {
    wantOfMemoryTold = false;
    int32_t result = guarded([&] {
        baseinitC();
        featinitC();
        rearmImport();
        const int32_t kind = 0;
        // The name of what is to be made comes first, although the caller gives it second.
        IMPSUB(textOf(datasetName), textOf(interchangePath), kind);
    });
    if (result == kEndedByError) {
        // A host's function that fails now changes nothing.
        try {
            tellWhereItEnded();
        } catch (...) {}
    }
    // What an import that was unwound left open. What is buffered reaches the disk, or does not.
    for (auto* step : {releaseImport, gridendC, featendC, baseendC, tellFailedWrite}) {
        result = std::min(result, guarded(step));
    }
    return result;
}

}  // namespace

int32_t ImportFile(const char* interchangePath, const char* datasetName, int32_t quiet) {
    // A host that calls from a message or from another thread. The import that runs goes on.
    if (importRuns.test_and_set()) {
        refuse();
        return kEndedByError;
    }
    const Companions companions(quiet);
    const int32_t result = runImport(interchangePath, datasetName);
    importRuns.clear();
    return result;
}
