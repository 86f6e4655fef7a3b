#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

#include "app/intake/command_line.h"

int main(int count, char** arguments) {
    std::ios::sync_with_stdio(false);
    program::Console console{std::cout, std::cerr, ::isatty(STDERR_FILENO) != 0};
    return program::run(std::vector<std::string>(arguments + 1, arguments + count), console);
}
