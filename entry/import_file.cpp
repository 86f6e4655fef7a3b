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

// An exception that is no error of the message service has given no message yet.
void tellException(std::string_view what) {
    try {
        intake::fatal("The import ended: %1%", what);
    } catch (...) {}
}

// Takes every exception. The message service's own has given its message and has no content.
int32_t guarded(std::string_view dataset, std::string_view file) {
    const int32_t kind = 0;
    try {
        IMPSUB(dataset, file, kind);
        return kRanToItsEnd;
    } catch (const std::bad_alloc&) {
        tellException("out of memory");
    } catch (const std::exception& exception) {
        tellException(exception.what());
    } catch (...) {}
    return kEndedByError;
}

}  // namespace

int32_t ImportFile(const char* interchangePath, const char* datasetName, int32_t quiet) {
    const Companions companions(quiet);
    baseinitC();
    featinitC();
    rearmImport();
    // The name of what is to be made comes first, although the caller gives it second.
    const int32_t result = guarded(datasetName, interchangePath);
    releaseImport();
    gridendC();
    featendC();
    baseendC();
    return result;
}
