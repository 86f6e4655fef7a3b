// How the program is used, as data: read off its command line, from which the help comes too.
#ifndef APP_INTAKE_MANUAL_USAGE_H
#define APP_INTAKE_MANUAL_USAGE_H

#include <string>
#include <vector>

namespace program {

struct Argument {
    std::vector<std::string> names;  // "-h" and "--help"; of a positional its one name
    bool positional = false;
    bool required = false;
    bool repeatable = false;
    std::string value;  // the name of an option's value; empty for a flag
    std::string text;
    std::vector<std::string> choices;  // all values that it takes, where they are a fixed set
};

struct Usage {
    std::string command;  // empty for the program itself
    std::string text;
    std::vector<Argument> arguments;
};

// The program itself, then its commands in the order of the help.
std::vector<Usage> usageOfAll();

}  // namespace program

#endif
