// intake batch: many files in one go.
#ifndef APP_INTAKE_BATCH_BATCH_H
#define APP_INTAKE_BATCH_BATCH_H

#include <string>

#include "app/intake/batch/options.h"
#include "app/intake/console.h"

namespace program {

// Takes each input, and tells it in the report; gives the exit status: kDone if all came out whole,
// kComplained if some did in part, kEnded if some failed or the batch could not go on.
int runBatch(const BatchOptions& options, Console& console);

// The report of a batch that names none.
std::string defaultReport(const BatchOptions& options);

}  // namespace program

#endif
