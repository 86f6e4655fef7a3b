// intake import.
#ifndef APP_INTAKE_IMPORT_H
#define APP_INTAKE_IMPORT_H

#include <string>

#include "app/intake/console.h"
#include "app/intake/source.h"

namespace program {

struct ImportOptions {
    SourceOptions source;
    std::string dataset;
    bool isTemporary = false;  // the dataset is of no use to the user, and nothing is said of it
    bool force = false;        // also where the dataset exists: the library answers then
    bool sync = false;         // what was imported lasts through a power cut
    bool replace = false;      // where the dataset exists the new one takes its place, once whole
    bool quiet = false;        // errors only
    bool json = false;         // the outcome as an object on the output
    bool events = false;       // what there is to tell as JSON Lines on the errors
};

// Runs the import, with each message to the console's errors as it is given; gives the exit status.
int importFile(const ImportOptions& options, Console& console);

}  // namespace program

#endif
