// A program as its users run it, a process of its own.
#ifndef BENCH_PROCESS_H
#define BENCH_PROCESS_H

#include <string>
#include <vector>

namespace bench {

struct Usage {
    double cpu;
    double wall;
};

// Runs a program with its output in the file "output" of the folder; throws where it does not
// succeed.
Usage runProgram(std::string program, std::vector<std::string> arguments);

}  // namespace bench

#endif
