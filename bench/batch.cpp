// Many small files in one go, beside the importer and the export in a bare loop, and beside a
// shell.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include "app/intake/export/export.h"
#include "app/intake/interrupts.h"
#include "bench/generator.h"
#include "bench/measure.h"
#include "bench/workspace.h"
#include "include/intakedl.h"

namespace bench {

namespace {

struct Usage {
    double cpu;
    double wall;
};

// From the environment: INTAKE_BENCH_FILES.
int fileCount() {
    const char* const text = std::getenv("INTAKE_BENCH_FILES");
    return text ? std::atoi(text) : 1000;
}

fs::path room() { return folder() / "batch"; }

// A new one for each run, removed when all are measured: some file systems are slow for minutes
// where many files were removed. What a run before wrote is on the disk by then.
fs::path newFolder() {
    ::sync();
    static int count = 0;
    const fs::path made = room() / std::to_string(++count);
    fs::create_directory(made);
    return made;
}

Usage usageOf(pid_t child, double begun) {
    int status = 0;
    rusage used{};
    require(::wait4(child, &status, 0, &used) == child, "the process is there");
    require(WIFEXITED(status) && WEXITSTATUS(status) % 3 == 0, "no file fails");
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
    };
    return {seconds(used.ru_utime) + seconds(used.ru_stime), now().wall - begun};
}

// In a process of its own; what it calls of others counts with it.
template <class Body>
Usage inProcess(Body body) {
    const double begun = now().wall;
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(STDERR_FILENO);
        ::open("/dev/null", O_WRONLY);
        body();
        ::_exit(0);
    }
    return usageOf(child, begun);
}

void runProgram(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::execv(arguments[0], arguments.data());
    ::_exit(99);
}

Usage batch(const std::string& input, const std::string& jobs,
            const std::vector<std::string>& more = {"--to", "csv"}) {
    const fs::path out = newFolder();
    std::vector<std::string> words = {INTAKE_PROGRAM_PATH, "batch", "--jobs", jobs,
                                      "--quiet",           "--out", out,      input};
    words.insert(words.end(), more.begin(), more.end());
    return inProcess([&] { runProgram(words); });
}

Usage bareLoop(const std::string& input) {
    const fs::path out = newFolder();
    return inProcess([&] {
        const program::Interrupts once;  // else a thread is begun for each export
        for (const auto& file : fs::directory_iterator(input)) {
            const fs::path workspace = room() / "workspace";
            fs::create_directory(workspace);
            const fs::path dataset = workspace / file.path().stem();
            if (ImportFile(file.path().c_str(), dataset.c_str(), 1) != 1) ::_exit(1);
            program::ExportOptions options;
            options.dataset = dataset;
            options.output = (out / file.path().stem()).string() + ".csv";
            options.format = "csv";
            options.quiet = true;
            std::ostringstream nowhere;
            program::Console console{nowhere, nowhere};
            if (program::exportDataset(options, console) % 3 != 0) ::_exit(1);
            fs::remove_all(workspace);
        }
    });
}

// Datasets in workspaces of their own, as a batch keeps them.
Usage shellLoop(const std::string& input) {
    const std::string out = newFolder();
    return inProcess([&] {
        const std::string loop = "cd " + out + " && for file in " + input +
                                 "/*; do name=${file##*/}; mkdir $name && " INTAKE_PROGRAM_PATH
                                 " import --quiet $file $name/x || exit 1; done";
        runProgram({"/bin/sh", "-c", loop});
    });
}

constexpr Usage kNone{1e9, 1e9};
void keepBest(Usage& best, const Usage& other) {
    best.cpu = std::min(best.cpu, other.cpu);
    best.wall = std::min(best.wall, other.wall);
}

void smallFiles(benchmark::State& state, std::size_t bytes) {
    const int files = fileCount();
    const fs::path input = room() / "in";
    const fs::path few = room() / "few";
    fs::remove_all(room());
    fs::create_directories(input);
    fs::create_directories(few);
    const std::string text = generate(kind("arcs_4E14.7"), bytes).text;
    const int fewFiles = std::min(files, 200);
    for (int each = 0; each < files; ++each) {
        const std::string name = std::to_string(each) + ".e00";
        std::ofstream(input / name, std::ios::binary) << text;
        if (each < fewFiles) std::ofstream(few / name, std::ios::binary) << text;
    }
    // The best of each counts, taken in turns.
    Usage bare = kNone;
    Usage one = kNone;
    Usage two = kNone;
    Usage kept = kNone;
    Usage shell = kNone;
    for (auto _ : state) {
        keepBest(bare, bareLoop(input));
        keepBest(one, batch(input, "1"));
        keepBest(two, batch(input, "2"));
        keepBest(kept, batch(input, "1", {}));
        keepBest(shell, shellLoop(few));
        state.SetIterationTime(one.wall);
    }
    state.counters["files_s"] = files / one.wall;
    state.counters["cpu_ms"] = one.cpu / files * 1e3;
    state.counters["kept_cpu_ms"] = kept.cpu / files * 1e3;
    state.counters["x_bare_cpu"] = one.cpu / bare.cpu;
    state.counters["jobs2_x"] = one.wall / two.wall;
    state.counters["x_shell"] = shell.wall / fewFiles / (kept.wall / files);
    state.counters["x_shell_cpu"] = shell.cpu / fewFiles / (kept.cpu / files);
    fs::remove_all(room());
}

// What the parent holds of each input, and how soon the work begins: of a part of a long list.
void longList(benchmark::State& state) {
    fs::create_directories(room());
    const fs::path list = room() / "list";
    const auto listOf = [&](int count) {
        std::ofstream stream(list);
        for (int each = 0; each < count; ++each) {
            stream << "/nowhere/archive/sheets/" << each % 1000 << "/map" << each << ".e00\n";
        }
    };
    constexpr int kMany = 1'000'000;
    constexpr int kFewer = 200'000;
    const auto run = [&](double* firstLine) {
        const fs::path out = room() / "out";
        fs::remove_all(out);
        const double begun = now().wall;
        const pid_t child = ::fork();
        if (child == 0) {
            ::close(STDERR_FILENO);
            ::open("/dev/null", O_WRONLY);
            runProgram({INTAKE_PROGRAM_PATH, "batch", "--jobs", "1", "--quiet", "--shard", "0/1000",
                        "--report", out / "lines", "--out", out, "@" + list.string()});
        }
        std::error_code none;
        while (firstLine &&
               (!fs::exists(out / "lines", none) || fs::file_size(out / "lines", none) == 0)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            require(now().wall - begun < 60, "the work begins");
        }
        if (firstLine) *firstLine = now().wall - begun;
        int status = 0;
        rusage used{};
        ::wait4(child, &status, 0, &used);
        return 1024.0 * static_cast<double>(used.ru_maxrss);
    };
    for (auto _ : state) {
        listOf(kFewer);
        const double fewer = run(nullptr);
        listOf(kMany);
        double firstLine = 0;
        const double many = run(&firstLine);
        state.SetIterationTime(firstLine);
        state.counters["first_line_s"] = firstLine;
        state.counters["bytes_an_input"] = (many - fewer) / (kMany - kFewer);
        require((many - fewer) / (kMany - kFewer) < 100, "memory is flat");
        require(firstLine < 1 || std::thread::hardware_concurrency() < 2, "work begins at once");
    }
    fs::remove_all(room());
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
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(rounds);
}

}  // namespace

void registerBatch() {
    measure("batch/4KB", 3, [](benchmark::State& state) { smallFiles(state, 4000); });
    measure("batch/20KB", 3, [](benchmark::State& state) { smallFiles(state, 20000); });
    measure("batch/100KB", 3, [](benchmark::State& state) { smallFiles(state, 100000); });
    measure("batch/long_list", 1, longList);
}

}  // namespace bench
