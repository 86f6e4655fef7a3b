// intake check: what a file is, and whether it is whole. Makes nothing.
#ifndef APP_INTAKE_CHECK_CHECK_H
#define APP_INTAKE_CHECK_CHECK_H

#include <string>
#include <vector>

#include "app/intake/console.h"

namespace program {

struct CheckOptions {
    std::vector<std::string> files;
    uint64_t mostBytes = 0;
    bool json = false;  // an object a line for each file
};

// Checks one file after another; gives the worst exit status, which for each is that of an import.
int check(const CheckOptions& options, Console& console);

}  // namespace program

#endif
