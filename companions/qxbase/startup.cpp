#include "host/qxbase/startup.h"

#include "companions/qxbase/state.h"
#include "companions/store/open_files.h"

namespace {

void closeAll() {
    qxbase::closeChannels();
    qxbase::closePlainRecordFiles();
    qxbase::closeRecordFiles();
    qxbase::closePlots();
    qxbase::closeLists();
    qxbase::closeBitmaps();
    qxbase::closeTransfers();
    qxbase::closeSurfaces();
    qxbase::closeMemberChannels();
    qxbase::closeScratchFiles();
    qxbase::leaveDirectories();
    qxbase::clearMessages();
}

}  // namespace

namespace qxbase {

void flushFiles() { store::flushAll(); }

}  // namespace qxbase

void baseendC() {
    closeAll();
    qxbase::tellFailedRead();
}

void baseinitC() {
    closeAll();
    qxbase::forgetFailures();
}
