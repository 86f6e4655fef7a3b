// Stacks: the names of grids that belong together.
#ifndef DATASETS_STACKS_H
#define DATASETS_STACKS_H

#include <string>
#include <vector>

#include "datasets/workspace.h"

namespace datasets {

bool isStack(const std::string& path);

// The names of a stack's members in their order, whether or not there are grids of these names.
std::vector<std::string> stackMembers(const std::string& stack);

// The members that exist. They lie beside the stack; a name that leads elsewhere is no member's.
std::vector<Dataset> memberGrids(const std::string& stack);

}  // namespace datasets

#endif
