// Time grows with the input: an import of twice as much of a thing takes at most 2.3 times as long.
//
// Each row is a file of n units that are all alike: long sections, many sections, many subclasses,
// many tables. n is doubled until an import takes long enough to be measured, INTAKE_BENCH_MS
// milliseconds.
#include <malloc.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <functional>

#include "bench/measure.h"
#include "bench/workspace.h"

namespace bench {

namespace {

constexpr double kMostTimes = 2.3;

std::string print(const char* format, ...) {
    char line[200];
    va_list values;
    va_start(values, format);
    std::vsnprintf(line, sizeof line, format, values);
    va_end(values);
    return line;
}

using Text = std::function<std::string(int n)>;

// The same text each time.
Text same(const std::string& text) {
    return [=](int) { return text; };
}
// A text with a number in it.
Text numbered(const std::string& format) {
    return [=](int n) { return print(format.c_str(), n); };
}

struct Row {
    const char* name;
    Text front;  // of the number of units
    Text unit;   // of a unit's number, from 1
    std::string back;
    int most = 1 << 22;
};

const std::string kEnd = "        -1         0         0         0         0         0         0\n";

std::string reals(int count) {
    std::string line;
    for (int field = 0; field < count; ++field) line += " 0.0000000E+00";
    return line + '\n';
}

std::string items(int count, int width, int step, int type) {
    std::string text;
    for (int item = 0; item < count; ++item) {
        text += print("ITEM%-12d%3d-1%4d4-1  10-1%2d4-1  -1  -1-1%-16s%4d-\n", item, width,
                      item * step + 1, type, "", 1);
    }
    return text;
}

std::string tableOf(int itemCount, int records, const std::string& itemLines,
                    const char* name = "X.PAT") {
    return print("%-34s%4d%4d%4d%10d\n", name, itemCount, itemCount, 12, records) + itemLines;
}

std::vector<Row> rows() {
    const std::string coverage = "ARC  2\n" + kEnd;
    const std::string arc =
        "         1         1         1         1         0         0         2\n" + reals(4);
    const std::string polygon = "         1" + reals(4) + "         1         1         1\n";
    const std::string counts = "         1         0         0         0         0         0";
    const std::string table = counts + "         0\n" + counts + "         0\n" + counts + '\n';
    const std::string annotation =
        "         1         1         1         0         1         1         2\n" + table + table +
        reals(1) + reals(3) + reals(1) + "AB\n";
    const std::string oldest = "         1         1         0         1         2\n" + reals(5) +
                               reals(5) + reals(5) + reals(1) + "AB\n";
    const std::string label = "         1         1" + reals(2) + reals(4);
    const std::string pairs = "         1         1\n" + kEnd;
    const std::string small = items(1, 4, 1, 5) + "          1\n";
    const std::string surface =
        "ENV  2\n         1         1         10         0         0         0\n\n\n\n" + reals(4) +
        reals(5) + '\n';
    const std::string grid =
        "GRD  2\n         1         1 1 0.00000000000000E+00\n"
        " 0.10000000000000E+01 0.10000000000000E+01\n 0.00000000000000E+00 0.00000000000000E+00\n"
        " 0.10000000000000E+01 0.10000000000000E+01\n             1\nEOG\n";
    const Text name = numbered("N%09d\n");
    const auto named = [=](const std::string& rest) {
        return [=](int n) { return name(n) + rest; };
    };
    const auto older = [=](int n) {
        return tableOf(1, 1, items(1, 4, 1, 2), print("X.%d", n).c_str()) + "   4\nABCD\n";
    };
    const auto grids = [=](int n) { return print("STK  2\n         1%10d\n", n); };
    const Text nothing = same("");
    return {
        {"arc_sections", nothing, same("ARC  2\n" + arc + kEnd), ""},
        {"labels", same("LAB  2\n"), same(label), "        -1         0" + reals(2)},
        {"label_sections", nothing, same("LAB  2\n" + label + "        -1         0" + reals(2)),
         ""},
        {"centroid_sections", nothing,
         same("CNT  2\n         1" + reals(2) + "         1\n        -1" + reals(2)), ""},
        {"polygon_sections", nothing, same("PAL  2\n" + polygon + "        -1" + reals(4)), ""},
        {"box_sections", nothing, same("PFF  2\n         1" + reals(4) + kEnd), ""},
        {"tolerance_sections", nothing, same("TOL  2\n         1         1" + reals(1) + kEnd), ""},
        {"link_sections", nothing, same("LNK  2\n" + reals(4) + "END OF LINK DATA\n"), ""},
        {"annotation_oldest", same("TXT  2\n"), same(oldest), kEnd},
        {"annotation_subclass", same("TX6  2\nNAME\n"), same(annotation), kEnd + "JABBERWOCKY\n"},
        {"annotation_one_subclass", same("TX7  2\n"), same("NAME\n" + annotation + kEnd),
         "JABBERWOCKY\n"},
        {"annotation_subclasses", same("TX7  2\n"), named(annotation + kEnd), "JABBERWOCKY\n",
         20000},
        {"pairs_one_subclass", same("RXP  2\n"), same("NAME\n" + pairs), "JABBERWOCKY\n"},
        {"pairs_subclasses", same("RXP  2\n"), named(pairs), "JABBERWOCKY\n", 20000},
        {"regions_one_subclass", same("RPL  2\n"),
         same("NAME\n" + polygon + "        -1" + reals(4)), "JABBERWOCKY\n"},
        {"regions_indexed", same("SIN  2\n* REGIONS\nEOX\nRPL  2\n"),
         named(polygon + "        -1" + reals(4)), "JABBERWOCKY\nIFO  2\nEOI\n", 20000},
        {"arcs_indexed_often", same("SIN  2\n*    ARCS\nEOX\n"),
         same("ARC  2\n" + arc + kEnd + "IFO  2\nEOI\n"), ""},
        {"index_requests", same("SIN  2\n"), same("* REGIONS\n"), "EOX\n"},
        {"address_texts", same("ADP  2\n"), same("ABCDEFGH         1\n"), "!!!!!!!!        -1\n"},
        {"address_integers", same("ADI  2\n"), same("         4\n         1     1     11\n"),
         "        -1\n"},
        {"address_one_record", [=](int n) { return print("ADI  2\n%10d\n", 12 * n + 4); },
         same("         1     1     11         1     1     11         1     1     11\n"),
         "         1     1     11\n        -1\n"},
        {"log", same("LOG  2\n"), same("A LINE OF THE LOG\n~\n"), "EOL\n"},
        {"projection_sections", nothing, same("PRJ  2\nUNITS METERS\n~\nEOP\n"), ""},
        {"tables", same(coverage + "IFO  2\n"),
         [=](int n) { return tableOf(1, 1, small, print("X.%d", n).c_str()); }, "EOI\n", 20000},
        {"tables_of_one_name", same(coverage + "IFO  2\n"), same(tableOf(1, 1, small)), "EOI\n"},
        {"table_sections", same(coverage), same("IFO  2\n" + tableOf(1, 1, small) + "EOI\n"), ""},
        {"table_records",
         [=](int n) { return coverage + "IFO  2\n" + tableOf(1, n, items(1, 4, 1, 5)); },
         same("          1\n"), "EOI\n"},
        {"table_records_indexed",
         [=](int n) {
             std::string index = items(1, 4, 1, 5);
             index[index.size() - 2] = 'I';
             return coverage + "IFO  2\n" + tableOf(1, n, index);
         },
         numbered("%11d\n"), "EOI\n"},
        {"table_items",
         [=](int n) { return coverage + "IFO  2\n" + tableOf(n, 0, items(n, 2, 2, 5)); }, nothing,
         "EOI\n", 2450},
        {"table_items_moved",
         [=](int n) {
             const std::string lines(static_cast<std::size_t>((n * 2 + 79) / 80), '\n');
             std::string text = coverage + "IFO  2\n" + tableOf(n, 20, items(n, 2, 1, 2));
             for (int record = 0; record < 20; ++record) text += lines;
             return text;
         },
         nothing, "EOI\n", 4900},
        {"tables_older", same(coverage + "IFO  1\n"), older, "EOS\n", 20000},
        {"table_metadata",
         same(coverage + "IFO  2\n" + tableOf(1, 1, small) + "EOI\nIMD  2\n X.PAT\n"),
         same("1A LINE OF METADATA\n"), "EOD\nEMD\n"},
        {"metadata", same(coverage + "MTD  2\n"), same("1A LINE OF METADATA\n"), "EOD\nEMD\n"},
        {"text", same("ASC  2\n"), same("A LINE OF A TEXT FILE\n"), "EOA\n"},
        {"plot", same("PLT  2\nTITLE\n"), same(" 1 1.00000E+00 2.00000E+00\n"), "EOP\n"},
        {"map", same("MAP  2\n"), named("PLT  2\nTITLE\n 1 1.00000E+00 2.00000E+00\nEOP\n"),
         "EOM\n", 20000},
        {"surfaces", nothing, same(surface), ""},
        {"mask", [=](int n) { return surface + print("TMK  2\n%10d%10d\n", 77 * n, n); },
         same(std::string(77, '1') + '\n'), "\n"},
        {"stack_members", grids, name, "EOK\n"},
        {"stack_grids",
         [=](int n) {
             std::string text = grids(n);
             for (int member = 1; member <= n; ++member) text += name(member);
             return text + "EOK\n";
         },
         same(grid), "STK  2\n         2         0\nEOK\n", 20000},
        {"font", numbered("FNT  2\nFONT  %10d\n"),
         same(reals(4) + reals(4) + reals(4) + reals(4) + reals(4)), "EOF\n", 900000},
        {"line_set", same("CL7  2\n"),
         same(counts + "NAME\n" + counts + '\n' + reals(4) + reals(3) + reals(3)), "EOS\n"},
        {"lines_passed_over", same(coverage), same("NO SECTION\n"), ""},
    };
}

// CPU seconds of the best of some imports.
double secondsFor(const Row& row, int n, int tries) {
    const fs::path file = folder() / "linear.e00";
    std::string text = "EXP  0 X\n" + row.front(n);
    for (int unit = 1; unit <= n; ++unit) text += row.unit(unit);
    std::ofstream(file, std::ios::binary) << text + row.back + "EOS\n";
    double best = 0;
    for (int attempt = 0; attempt < tries; ++attempt) {
        clearWorkspace();
        const double start = now().cpu;
        import(file, "FONT");
        const double taken = now().cpu - start;
        best = attempt == 0 ? taken : std::min(best, taken);
    }
    return best;
}

void measure(benchmark::State& state, const Row& row) {
    const char* wish = std::getenv("INTAKE_BENCH_MS");
    const double least = wish ? std::strtod(wish, nullptr) / 1000 : 0.1;
    constexpr double kWorthJudging = 0.05;
    const InMemory folders;
    // Large buffers come from the system each time. Otherwise those of up to 32 MiB come from what
    // an earlier import gave back, and only twice as many pay for their pages.
    mallopt(M_MMAP_THRESHOLD, 1 << 20);
    try {
        for (auto _ : state) {
            int n = std::min(50, row.most);
            while (n < row.most && secondsFor(row, n, 1) < least) n = std::min(2 * n, row.most);
            // Whatever else the machine does makes a figure worse, never better.
            double once = 0;
            double twice = 0;
            for (int attempt = 0; attempt < 4 && (attempt == 0 || twice > kMostTimes * once);
                 ++attempt) {
                once = secondsFor(row, n, 3);
                twice = secondsFor(row, 2 * n, 3);
            }
            state.SetIterationTime(twice);
            state.counters["n"] = n;
            state.counters["ms"] = once * 1000;
            state.counters["ratio"] = twice / once;
            require(once < kWorthJudging || twice <= kMostTimes * once, "time grows faster");
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

}  // namespace

void registerLinear() {
    for (const Row& row : rows()) {
        benchmark::RegisterBenchmark((std::string("linear/") + row.name).c_str(),
                                     [row](benchmark::State& state) { measure(state, row); })
            ->UseManualTime()
            ->Iterations(1)
            ->Unit(benchmark::kMillisecond);
    }
}

}  // namespace bench
