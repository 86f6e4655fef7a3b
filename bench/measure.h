// What the benchmarks share: time, checks, and comparisons that are measured in rounds.
#ifndef BENCH_MEASURE_H
#define BENCH_MEASURE_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

// Of the process, and of the clock on the wall.
struct Seconds {
    double cpu;
    double wall;
};
Seconds now();

// Megabytes of text for a whole import, from the environment: INTAKE_BENCH_MB.
std::size_t importBytes();
// How often each way of a whole import is timed, from the environment: INTAKE_BENCH_ROUNDS.
int importRounds();

inline void require(bool holds, const std::string& what) {
    if (!holds) throw std::runtime_error("wrong result: " + what);
}

// Several ways to handle the same `bytes` of text, timed in turns: the first, the second, ... the
// first again, so that a busy machine hurts all of them. What counts is the best time of each. The
// benchmark's counters tell for each way its megabytes a second, and for the last one, which is
// ours, how many times as fast as each other it is, by the CPU time of the process and by the wall.
class Comparison {
  public:
    using Step = std::function<void()>;

    explicit Comparison(std::string what, std::size_t bytes = 0)
        : what_(std::move(what)), bytes_(bytes) {}

    // Between runs before each turn and is not timed.
    Comparison& add(
        const std::string& name, Step body, Step between = [] {});
    // Before runs once ahead of all turns and gives the bytes; after runs once behind them.
    Comparison& around(std::function<std::size_t()> before, Step after);
    // So many rounds instead of as many as it takes to be sure.
    Comparison& rounds(int count);
    void run() const;

  private:
    struct Way {
        std::string name;
        Step body;
        Step between;
    };
    static void measure(benchmark::State& state, const Comparison& comparison);

    std::string what_;
    std::size_t bytes_;
    std::vector<Way> ways_;
    std::function<std::size_t()> before_ = [bytes = bytes_] { return bytes; };
    Step after_ = [] {};
    int rounds_ = 0;
};

// Each file registers its own.
void registerFields();
void registerLines();
void registerImports();
void registerTin();
void registerGridMemory();
void registerIndex();
void registerLinear();
void registerFullWorkspace();
void registerProgram();
void registerPolygons();
void registerFormats();
void registerRasters();
void registerBatch();
void registerSync();

}  // namespace bench

#endif
