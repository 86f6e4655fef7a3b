// What outlives a section: one record for the process.
#ifndef TABLES_STATE_H
#define TABLES_STATE_H

#include "stream/types.h"

namespace intake {

struct TablesState {
    Handle textChannel = 0;        // the file of TXTOPN, TXTPUT and TXTCLS
    int64_t bytesWithoutText = 0;  // stored for records and indexes beyond what text justifies
    int64_t bytesReadAgain = 0;    // of records for indexes, beyond the same
};

extern TablesState tablesState;

}  // namespace intake

#endif
