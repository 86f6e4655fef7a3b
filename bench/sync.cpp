// What it costs to bring an import to the disk file by file, on the clock: the disk is waited for.
#include <cstdio>
#include <fstream>

#include "bench/generator.h"
#include "bench/measure.h"
#include "bench/process.h"
#include "bench/workspace.h"

namespace bench {

namespace {

struct Size {
    const char* name;
    std::size_t bytes;
};
constexpr Size kSizes[] = {{"4KB", 4000}, {"20KB", 20000}, {"1MB", 1000000}};

// A map of arcs with a table.
fs::path makeMap(std::size_t bytes) {
    const fs::path path = folder() / "map.e00";
    std::string arcs = generate(kind("arcs_4E14.7"), bytes).text;
    arcs.erase(arcs.rfind("EOS"));
    char table[400];
    std::snprintf(table, sizeof table,
                  "IFO  2\n%-34s%4d%4d%4d%10d\n%-16s%3d-1%4d4-1  10-1%2d4-1  -1  -1-1%-16s%4d-\n"
                  "%11d\nEOI\nEOS\n",
                  "X.AAT", 1, 1, 4, 1, "ITEM", 4, 1, 5, "", 1, 1);
    std::ofstream(path, std::ios::binary) << arcs << table;
    return path;
}

Usage importMap(const fs::path& file, bool sync) {
    clearWorkspace();
    std::vector<std::string> arguments = {"import", "--quiet", file.string(),
                                          (folder() / "workspace/DS").string()};
    if (sync) arguments.emplace_back("--sync");
    return runProgram(INTAKE_PROGRAM_PATH, arguments);
}

void measure(benchmark::State& state, const Size& size) {
    const fs::path file = makeMap(size.bytes);
    Usage plain;
    Usage synced;
    for (auto _ : state) {
        plain.keepBest(importMap(file, false));
        const Usage last = importMap(file, true);
        synced.keepBest(last);
        state.SetIterationTime(last.wall);
    }
    state.counters["plain_ms"] = plain.wall * 1e3;
    state.counters["sync_ms"] = synced.wall * 1e3;
    clearWorkspace();
    fs::remove(file);
    fs::remove(folder() / "output");
}

}  // namespace

void registerSync() {
    for (const Size& size : kSizes) {
        benchmark::RegisterBenchmark((std::string("sync/") + size.name).c_str(),
                                     [&size](benchmark::State& state) {
                                         try {
                                             measure(state, size);
                                         } catch (const std::exception& exception) {
                                             state.SkipWithError(exception.what());
                                         }
                                     })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(4 * importRounds());
    }
}

}  // namespace bench
