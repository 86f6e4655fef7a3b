// How much memory a piece of work takes at its height.
#ifndef BENCH_MEMORY_H
#define BENCH_MEMORY_H

#include <malloc.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "bench/measure.h"

namespace bench {

// Kilobytes that the process holds (VmRSS), or held at its height since the last reset (VmHWM).
inline long memory(const char* which) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(which, 0) == 0) return std::strtol(line.c_str() + 6, nullptr, 10);
    }
    return 0;
}

// Runs the body and tells its height, in kilobytes over what was held before it.
template <class Body>
long growthOf(Body body) {
    malloc_trim(0);  // what is free already would hide what the body takes
    std::ofstream("/proc/self/clear_refs") << '5';
    const long before = memory("VmRSS");
    body();
    require(before != 0, "the memory is told");
    return memory("VmHWM") - before;
}

// The same, held to a limit.
template <class Body>
void requireWithin(long mostKilobytes, Body body) {
    const long grown = growthOf(body);
    require(grown < mostKilobytes, "memory is bounded, not " + std::to_string(grown) + " kB");
}

}  // namespace bench

#endif
