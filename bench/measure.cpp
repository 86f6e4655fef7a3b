#include "bench/measure.h"

#include <time.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace bench {

namespace {

double secondsOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

long wish(const char* name, long otherwise) {
    const char* text = std::getenv(name);
    const long value = text ? std::strtol(text, nullptr, 10) : 0;
    return value > 0 ? value : otherwise;
}

}  // namespace

Seconds now() { return {secondsOf(CLOCK_PROCESS_CPUTIME_ID), secondsOf(CLOCK_MONOTONIC)}; }

std::size_t importBytes() { return static_cast<std::size_t>(wish("INTAKE_BENCH_MB", 100)) << 20; }

int importRounds() { return static_cast<int>(wish("INTAKE_BENCH_ROUNDS", 5)); }

Comparison& Comparison::add(const std::string& name, Step body, Step between) {
    ways_.push_back({name, std::move(body), std::move(between)});
    return *this;
}

Comparison& Comparison::around(std::function<std::size_t()> before, Step after) {
    before_ = std::move(before);
    after_ = std::move(after);
    return *this;
}

Comparison& Comparison::rounds(int count) {
    rounds_ = count;
    return *this;
}

void Comparison::measure(benchmark::State& state, const Comparison& comparison) {
    constexpr double kNever = std::numeric_limits<double>::max();
    std::vector<Seconds> best(comparison.ways_.size(), {kNever, kNever});
    std::size_t bytes = 0;
    try {
        bytes = comparison.before_();
        for (auto _ : state) {
            for (std::size_t way = 0; way < best.size(); ++way) {
                comparison.ways_[way].between();
                const Seconds start = now();
                comparison.ways_[way].body();
                const Seconds end = now();
                best[way].cpu = std::min(best[way].cpu, end.cpu - start.cpu);
                best[way].wall = std::min(best[way].wall, end.wall - start.wall);
                if (way + 1 == best.size()) state.SetIterationTime(end.cpu - start.cpu);
            }
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
    comparison.after_();
    if (state.error_occurred()) return;
    const Seconds& ours = best.back();
    for (std::size_t way = 0; way < best.size(); ++way) {
        const std::string& name = comparison.ways_[way].name;
        state.counters[name + "_MBps"] = static_cast<double>(bytes) / best[way].cpu / 1e6;
        if (way + 1 == best.size()) continue;
        state.counters["x_" + name] = best[way].cpu / ours.cpu;
        state.counters["x_" + name + "_wall"] = best[way].wall / ours.wall;
    }
}

void Comparison::run() const {
    auto* made = benchmark::RegisterBenchmark(
        what_.c_str(),
        [comparison = *this](benchmark::State& state) { measure(state, comparison); });
    made->UseManualTime()->Unit(benchmark::kMillisecond);
    if (rounds_ > 0) made->Iterations(rounds_);
}

}  // namespace bench
