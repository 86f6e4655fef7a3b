// Stacks: the names of grids that belong together.
#ifndef APP_INTAKE_STACKS_H
#define APP_INTAKE_STACKS_H

#include <string>
#include <vector>

#include "app/intake/dataset.h"

namespace program {

// The names of a stack's members in their order, whether or not there are grids of these names.
std::vector<std::string> stackMembers(const std::string& stack);

// The members that exist. They lie beside the stack; a name that leads elsewhere is no member's.
std::vector<Dataset> memberGrids(const std::string& stack);

}  // namespace program

#endif
