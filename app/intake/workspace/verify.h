// intake check-workspace.
#ifndef APP_INTAKE_WORKSPACE_VERIFY_H
#define APP_INTAKE_WORKSPACE_VERIFY_H

#include <string>

#include "app/intake/console.h"

namespace program {

struct VerifyOptions {
    std::string workspace = ".";
    bool repair = false;
    bool json = false;
};

// Looks through a workspace, and reads all that it holds: a line for each thing that is wrong, and
// for each that is left over. Gives kComplained if something is damaged and stays so, and kDone if
// not. Throws a datasets::NoDataset where there is no such folder.
int checkWorkspace(const VerifyOptions& options, Console& console);

}  // namespace program

#endif
