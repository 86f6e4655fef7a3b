// intake list.
#ifndef APP_INTAKE_WORKSPACE_LIST_H
#define APP_INTAKE_WORKSPACE_LIST_H

#include <string>

#include "app/intake/console.h"

namespace program {

// Prints what a workspace holds: its datasets, and the tables that belong to none, each with its
// kind, date, size and content. Throws a std::runtime_error where there is no such folder.
void listWorkspace(const std::string& workspace, bool json, Console& console);

}  // namespace program

#endif
