#include <algorithm>
#include <atomic>
#include <exception>
#include <new>
#include <string_view>

#include "entry/companions.h"
#include "entry/import_driver.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "host/qxgridio.h"
#include "intakedl.h"
#include "stream/report.h"

namespace {

using namespace intake;

constexpr int32_t kRanToItsEnd = 1;
constexpr int32_t kEndedByError = 0;

// Set while an import runs, in whatever thread.
std::atomic_flag importRuns = ATOMIC_FLAG_INIT;

// An exception that is no error of the message service has given no message yet.
void tellException(std::string_view what) {
    try {
        intake::fatal("The import ended: %1%", what);
    } catch (...) {}
}

// Takes every exception. The message service's own has given its message and has no content.
template <class Work>
int32_t guarded(Work work) {
    try {
        work();
        return kRanToItsEnd;
    } catch (const std::bad_alloc&) {
        tellException("out of memory");
    } catch (const std::exception& exception) {
        tellException(exception.what());
    } catch (...) {}
    return kEndedByError;
}

std::string_view textOf(const char* text) { return text ? std::string_view(text) : ""; }

}  // namespace

int32_t ImportFile(const char* interchangePath, const char* datasetName, int32_t quiet) {
    // A host that calls from a message or from another thread. The import that runs goes on.
    if (importRuns.test_and_set()) {
        nonftl("Another import is running in this process.");
        return kEndedByError;
    }
    const Companions companions(quiet);
    const int32_t result = guarded([&] {
        baseinitC();
        featinitC();
        rearmImport();
        const int32_t kind = 0;
        // The name of what is to be made comes first, although the caller gives it second.
        IMPSUB(textOf(datasetName), textOf(interchangePath), kind);
    });
    // What an import that was unwound left open.
    const int32_t released = guarded([] {
        releaseImport();
        gridendC();
        featendC();
        baseendC();
    });
    importRuns.clear();
    return std::min(result, released);
}
