#include "host/qxbase/startup.h"

#include "companions/qxbase/state.h"
#include "companions/store/open_files.h"

namespace qxbase {

void flushFiles() {
    store::flushAll();
}

}  // namespace qxbase

void baseendC() {
    qxbase::closeChannels();
    qxbase::closePlainRecordFiles();
    qxbase::closeRecordFiles();
    qxbase::closeLists();
    qxbase::closeBitmaps();
    qxbase::closeTransfers();
    qxbase::closeSurfaces();
    qxbase::closeMemberChannels();
    qxbase::leaveDirectories();
    qxbase::clearMessages();
}

void baseinitC() {
    baseendC();
}
