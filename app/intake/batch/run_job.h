// One input of a batch, by a worker: imported, exported, put in its place and told.
#ifndef APP_INTAKE_BATCH_RUN_JOB_H
#define APP_INTAKE_BATCH_RUN_JOB_H

#include <string>

#include "app/intake/batch/message.h"
#include "app/intake/batch/options.h"

namespace program {

// Folders that this worker has for itself, empty between jobs.
struct Rooms {
    std::string scratch;  // for what nobody is to see
    std::string quick;    // for little of that, in memory; empty where there is none
    // For outputs before they are put in their place: on the same file system.
    std::string unplaced;
    // The name of its file for what is gathered, below the folder of outputs.
    std::string gathered;
};

// Removes all that is in the folders.
void emptyFolders(const Rooms& rooms);

// The folders are empty again behind it.
Reply runJob(const Job& job, const BatchOptions& options, const Rooms& rooms);

}  // namespace program

#endif
