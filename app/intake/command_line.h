// The command line of intake.
#ifndef APP_INTAKE_COMMAND_LINE_H
#define APP_INTAKE_COMMAND_LINE_H

#include <string>
#include <vector>

#include "app/intake/console.h"

namespace program {

// Runs one command, given its arguments without the program's name; gives the exit status.
int run(const std::vector<std::string>& arguments, Console& console);

}  // namespace program

#endif
