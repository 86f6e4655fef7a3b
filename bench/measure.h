// One way to time everything: CPU time of the process, bytes of interchange text per second, and
// how many times as fast as the plain way, which is measured first in the same run.
#ifndef BENCH_MEASURE_H
#define BENCH_MEASURE_H

#include <benchmark/benchmark.h>
#include <time.h>

#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>

namespace bench {

inline double cpuSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

// Megabytes of text for a whole import, from the environment: INTAKE_BENCH_MB.
inline std::size_t importBytes() {
    const char* wish = std::getenv("INTAKE_BENCH_MB");
    const long megabytes = wish ? std::strtol(wish, nullptr, 10) : 0;
    return static_cast<std::size_t>(megabytes > 0 ? megabytes : 4) << 20;
}

// Registers WHAT/plain and then WHAT/NAME for each of ours. Each body handles `bytes` of text once;
// between gets what the last run left behind out of the way.
class Comparison {
  public:
    Comparison(std::string what, std::size_t bytes) : what_(std::move(what)), bytes_(bytes) {}

    template <class Body, class Between>
    void add(const std::string& name, Body body, Between between) {
        benchmark::RegisterBenchmark(
            (what_ + "/" + name).c_str(),
            [what = what_, bytes = bytes_, name, body, between](benchmark::State& state) {
                double seconds = 0;
                try {
                    for (auto _ : state) {
                        between();
                        const double start = cpuSeconds();
                        body();
                        const double taken = cpuSeconds() - start;
                        state.SetIterationTime(taken);
                        seconds += taken;
                    }
                } catch (const std::exception& exception) {
                    state.SkipWithError(exception.what());
                    return;
                }
                const auto runs = static_cast<double>(state.iterations());
                state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
                std::map<std::string, double>& plainSeconds = plainSecondsOf();
                if (name == "plain") plainSeconds[what] = seconds / runs;
                if (plainSeconds.count(what) != 0) {
                    state.counters["times_plain"] = plainSeconds[what] / (seconds / runs);
                }
            })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    template <class Body>
    void add(const std::string& name, Body body) {
        add(name, body, [] {});
    }

  private:
    static std::map<std::string, double>& plainSecondsOf() {
        static std::map<std::string, double> seconds;
        return seconds;
    }

    std::string what_;
    std::size_t bytes_;
};

inline void require(bool holds, const std::string& what) {
    if (!holds) throw std::runtime_error("wrong result: " + what);
}

// Each file registers its own.
void registerFields();
void registerLines();
void registerImports();
void registerTin();
void registerGridMemory();
void registerIndex();
void registerLinear();

}  // namespace bench

#endif
