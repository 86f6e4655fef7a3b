// A large grid is imported with memory for a row of it, not for the grid.
#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "bench/measure.h"
#include "intakedl.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

// Columns and rows, from the environment: INTAKE_BENCH_GRID. 20000 writes a file of 5.7 GB.
int64_t gridSide() {
    const char* wish = std::getenv("INTAKE_BENCH_GRID");
    const long side = wish ? std::strtol(wish, nullptr, 10) : 0;
    return side > 0 ? side : 1000;
}

// A line of /proc/self/status that tells kilobytes.
int64_t memory(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word != name) continue;
        int64_t kilobytes = 0;
        status >> kilobytes;
        return kilobytes;
    }
    return 0;
}

// Writes the grid row by row; all rows are the same line, over and over. Returns the bytes.
int64_t writeGrid(const fs::path& path, int64_t side) {
    std::ofstream file(path, std::ios::binary);
    const auto real = [](int64_t value) {
        char text[32];
        std::snprintf(text, sizeof text, "%21.14E", static_cast<double>(value));
        return std::string(text);
    };
    file << "EXP  0 GRID\nGRD  3\n         1         1 1" << real(-9999) << '\n'
         << real(1) << real(1) << '\n'
         << real(0) << real(0) << '\n'
         << real(side) << real(side) << '\n';
    std::string row;
    for (int64_t line = 0; line < (side + 4) / 5; ++line) {
        row += "           483           487           491           493          -488\n";
    }
    for (int64_t each = 0; each < side; ++each) file << row;
    file << "EOG\nEOS\n";
    file.flush();
    require(file.good(), "no room for the file");
    return static_cast<int64_t>(file.tellp());
}

void importGrid(benchmark::State& state) {
    const int64_t side = gridSide();
    std::string name = (fs::temp_directory_path() / "intake-bench-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        state.SkipWithError("no folder to write to");
        return;
    }
    const fs::path folder = name;
    try {
        const int64_t bytes = writeGrid(folder / "grid.e00", side);
        int64_t growth = 0;
        for (auto _ : state) {
            fs::remove_all(folder / "workspace");
            fs::create_directory(folder / "workspace");
            // The highest mark of memory starts again from what is in use now.
            std::ofstream("/proc/self/clear_refs") << "5";
            const int64_t before = memory("VmRSS:");
            const double start = now().cpu;
            const std::string dataset = (folder / "workspace/DS").string();
            const int32_t result = ImportFile((folder / "grid.e00").c_str(), dataset.c_str(), 1);
            state.SetIterationTime(now().cpu - start);
            growth = memory("VmHWM:") - before;
            require(result == 1, "the import ran to its end");
            require(static_cast<int64_t>(fs::file_size(folder / "workspace/DS/grid")) ==
                        128 + side * side * 4,
                    "all rows are stored");
        }
        // A few rows, and the buffers of the reader and the writer.
        require(growth * 1024 < side * 4 * 4 + (int64_t{2} << 20), "memory for rows alone");
        state.SetBytesProcessed(state.iterations() * bytes);
        state.counters["peak_growth_KB"] = static_cast<double>(growth);
        state.counters["grid_KB"] = static_cast<double>(side * side * 4 / 1024);
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

}  // namespace

void registerGridMemory() {
    benchmark::RegisterBenchmark("grid_memory", importGrid)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

}  // namespace bench
