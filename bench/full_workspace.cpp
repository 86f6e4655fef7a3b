// An import into a workspace of 28,000 tables costs at most 1.2 times what it does in an empty one,
// alone and beside another process that imports there too; and the 30,000th import into one
// workspace as much as the first.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "bench/measure.h"
#include "bench/workspace.h"

namespace bench {

namespace {

constexpr int kTables = 28000;
constexpr int kImports = 1000;
constexpr double kMostTimes = 1.2;

fs::path fileOf(int tables, const char* name) {
    const fs::path file = folder() / name;
    std::ofstream text(file, std::ios::binary);
    text << "EXP  0 X\nARC  2\n";
    text << "        -1         0         0         0         0         0         0\nIFO  2\n";
    for (int table = 0; table < tables; ++table) {
        char line[256];
        std::snprintf(line, sizeof line,
                      "%-34s%4d%4d%4d%10d\n%-16s%3d-1%4d4-1  10-1%2d4-1  -1  -1-1%-16s%4d-\n%11d\n",
                      ("X.T" + std::to_string(table)).c_str(), 1, 1, 4, 1, "ITEM", 4, 1, 5, "", 1,
                      table);
        text << line;
    }
    text << "EOI\nEOS\n";
    return file;
}

// Seconds of CPU that so many processes at a time take for their imports, each.
double secondsOf(int processes, const fs::path& file) {
    rusage before{};
    getrusage(RUSAGE_CHILDREN, &before);
    for (int process = 0; process < processes; ++process) {
        if (fork() != 0) continue;
        int failed = 0;
        try {
            for (int each = 0; each < kImports; ++each) {
                import(file, ("P" + std::to_string(process) + "_" + std::to_string(each)).c_str());
            }
        } catch (const std::exception&) {
            failed = 1;
        }
        _exit(failed);
    }
    bool whole = true;
    for (int process = 0; process < processes; ++process) {
        int status = 1;
        wait(&status);
        whole = whole && status == 0;
    }
    require(whole, "each process imported all");
    rusage after{};
    getrusage(RUSAGE_CHILDREN, &after);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return (seconds(after.ru_utime) + seconds(after.ru_stime) - seconds(before.ru_utime) -
            seconds(before.ru_stime)) /
           (processes * kImports);
}

void measure(benchmark::State& state) {
    const InMemory folders;
    try {
        const fs::path many = fileOf(kTables, "many.e00");
        const fs::path one = fileOf(1, "one.e00");
        const auto processes = static_cast<int>(state.range(0));
        for (auto _ : state) {
            double empty = 0;
            double full = 0;
            // Whatever else the machine does makes a figure worse, never better.
            for (int attempt = 0; attempt < 3 && (attempt == 0 || full > kMostTimes * empty);
                 ++attempt) {
                clearWorkspace();
                empty = secondsOf(processes, one);
                clearWorkspace();
                import(many, "MANY");
                full = secondsOf(processes, one);
            }
            state.SetIterationTime(full);
            state.counters["us"] = full * 1e6;
            state.counters["ratio"] = full / empty;
            require(full <= kMostTimes * empty, "imports cost more in a full workspace");
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

// The first and the last hundred of so many imports into one workspace.
void measureMany(benchmark::State& state) {
    constexpr int kAll = 30000;
    constexpr int kJudged = 100;
    const InMemory folders;
    try {
        const fs::path one = fileOf(1, "one.e00");
        for (auto _ : state) {
            double first = 0;
            double last = 0;
            for (int attempt = 0; attempt < 3 && (attempt == 0 || last > kMostTimes * first);
                 ++attempt) {
                clearWorkspace();
                std::vector<double> taken;
                for (int number = 0; number < kAll; ++number) {
                    const double start = now().cpu;
                    import(one, ("P" + std::to_string(number)).c_str());
                    taken.push_back(now().cpu - start);
                }
                // The middle one, since a busy machine hurts some of them.
                const auto middle = [](std::vector<double>::iterator from) {
                    std::nth_element(from, from + kJudged / 2, from + kJudged);
                    return from[kJudged / 2];
                };
                first = middle(taken.begin());
                last = middle(taken.end() - kJudged);
            }
            state.SetIterationTime(last);
            state.counters["us"] = last * 1e6;
            state.counters["ratio"] = last / first;
            require(last <= kMostTimes * first, "the last import costs more than the first");
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
    clearWorkspace();
}

}  // namespace

void registerFullWorkspace() {
    benchmark::RegisterBenchmark("linear/full_workspace", measure)
        ->Arg(1)
        ->Arg(2)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("linear/import_30000", measureMany)
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMicrosecond);
}

}  // namespace bench
