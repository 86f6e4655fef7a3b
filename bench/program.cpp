// The program as its users run it, each time a process of its own: small files, memory, show, dump.
#include <fstream>

#include "bench/generator.h"
#include "bench/measure.h"
#include "bench/memory.h"
#include "bench/process.h"
#include "bench/workspace.h"

namespace bench {

namespace {

Usage runIntake(const std::vector<std::string>& arguments) {
    return runProgram(INTAKE_PROGRAM_PATH, arguments);
}

constexpr char kArcs[] = "arcs_4E14.7";
constexpr char kTable[] = "table_128";

// A file of a kind, and how it is imported.
fs::path fileOf(const char* kindName, const char* name, std::size_t bytes) {
    const fs::path path = folder() / name;
    std::ofstream(path, std::ios::binary) << generate(kind(kindName), bytes).text;
    return path;
}
fs::path arcs(const char* name, std::size_t bytes) { return fileOf(kArcs, name, bytes); }
Usage importFile(const fs::path& file) {
    clearWorkspace();
    return runIntake({"import", "--quiet", file.string(), (folder() / "workspace/DS").string()});
}

template <class Body>
void measure(const char* name, int rounds, Body body) {
    benchmark::RegisterBenchmark(name,
                                 [body](benchmark::State& state) {
                                     try {
                                         body(state);
                                     } catch (const std::exception& exception) {
                                         state.SkipWithError(exception.what());
                                     }
                                     clearWorkspace();
                                     for (const char* made : {"small.e00", "large.e00", "output"})
                                         fs::remove(folder() / made);
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(rounds);
}

// Times the body's best round.
template <class Body>
Usage best(benchmark::State& state, Body body) {
    Usage best;
    for (auto _ : state) {
        const Usage usage = body();
        state.SetIterationTime(usage.cpu);
        best.keepBest(usage);
    }
    state.counters["cpu_ms"] = best.cpu * 1e3;
    state.counters["wall_ms"] = best.wall * 1e3;
    return best;
}

void smallFile(benchmark::State& state) {
    const fs::path file = arcs("small.e00", 20000);
    best(state, [&] { return importFile(file); });
}

// An import of twenty times as much takes no more memory: over what the process holds before.
void memoryHeight(benchmark::State& state) {
    const fs::path small = arcs("small.e00", importBytes() / 10);
    const fs::path large = arcs("large.e00", 2 * importBytes());
    const auto growth = [](const fs::path& file) {
        clearWorkspace();
        return static_cast<double>(growthOf([&] { import(file); }));
    };
    growth(small);  // brings in what any import brings in
    for (auto _ : state) {
        const double one = growth(small);
        const double other = growth(large);
        state.SetIterationTime(1);
        state.counters["small_KB"] = one;
        state.counters["large_KB"] = other;
        require(other < 1.1 * one, "memory is flat");
    }
}

void show(benchmark::State& state) {
    importFile(arcs("large.e00", 2 * importBytes()));
    best(state, [] { return runIntake({"show", (folder() / "workspace/DS").string()}); });
}

template <const char* kindName>
void dump(benchmark::State& state) {
    importFile(fileOf(kindName, "large.e00", importBytes()));
    const Usage usage = best(state, [] {
        return runIntake({"dump", (folder() / "workspace/DS").string()});
    });
    const auto bytes = static_cast<double>(fs::file_size(folder() / "output"));
    require(bytes > static_cast<double>(importBytes()) / 4, "the records are told");
    state.counters["JSON_MBps"] = bytes / usage.cpu / 1e6;
}

void pack(benchmark::State& state) {
    const fs::path file = arcs("large.e00", importBytes());
    const fs::path packed = folder() / "packed.e00";
    const Usage usage = best(state, [&] {
        fs::remove(packed);
        return runIntake({"pack", file.string(), packed.string()});
    });
    const auto bytes = static_cast<double>(fs::file_size(packed));
    fs::remove(packed);
    require(bytes > 0.2 * static_cast<double>(importBytes()), "the lines are packed");
    state.counters["intake_MBps"] = static_cast<double>(importBytes()) / usage.cpu / 1e6;
}

void dumpAgainst(benchmark::State& state) {
    importFile(fileOf(kTable, "large.e00", importBytes()));
    measureAgainst(state, {"dump", (folder() / "workspace/DS").string()}, [] {});
}

void packAgainst(benchmark::State& state) {
    const fs::path file = arcs("large.e00", importBytes());
    const fs::path packed = folder() / "packed.e00";
    measureAgainst(state, {"pack", file.string(), packed.string()}, [&] { fs::remove(packed); });
    fs::remove(packed);
}

}  // namespace

void registerProgram() {
    measure("program/small_file", 20, smallFile);
    measure("program/memory", 1, memoryHeight);
    measure("program/show", importRounds(), show);
    measure("program/dump_arcs", importRounds(), dump<kArcs>);
    measure("program/dump_table", importRounds(), dump<kTable>);
    measure("program/pack", importRounds(), pack);
    if (!otherBuild()) return;
    measure("against/dump_table", importRounds(), dumpAgainst);
    measure("against/pack", importRounds(), packAgainst);
}

}  // namespace bench
