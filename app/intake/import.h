// intake import.
#ifndef APP_INTAKE_IMPORT_H
#define APP_INTAKE_IMPORT_H

#include <string>

#include "app/intake/console.h"

namespace program {

struct ImportOptions {
    std::string file;
    std::string dataset;
    bool force = false;  // also where the dataset exists: the library answers then
    bool quiet = false;  // errors only
    bool json = false;
};

// Runs the import, with each message to the console's errors as it is given; gives the exit status.
int importFile(const ImportOptions& options, Console& console);

}  // namespace program

#endif
