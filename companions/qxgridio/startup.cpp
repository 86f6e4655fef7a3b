#include "host/qxgridio/startup.h"

#include "companions/store/open_files.h"

void gridendC() { store::flushAll(); }
