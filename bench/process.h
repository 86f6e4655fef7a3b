// A program as its users run it, a process of its own.
#ifndef BENCH_PROCESS_H
#define BENCH_PROCESS_H

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Usage {
    double cpu = 1e9;
    double user = 1e9;  // what of that was not the kernel's
    double wall = 1e9;

    void keepBest(const Usage& other);
};

// Runs a program with its output in the file "output" of the folder; throws where it does not
// succeed.
Usage runProgram(std::string program, std::vector<std::string> arguments);

// Another build of the program, to be measured beside this one: INTAKE_BENCH_AGAINST of the
// environment, or null.
const char* otherBuild();

// Both in turns, each a process of its own: of_before is the part that this one takes of the other
// one's CPU time, of_before_user of what the kernel has no part in. Between comes before each.
void measureAgainst(benchmark::State& state, const std::vector<std::string>& arguments,
                    const std::function<void()>& between);

}  // namespace bench

#endif
