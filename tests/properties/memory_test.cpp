// An import takes at most 32 MiB and the largest single record, whatever the file: each runs in a
// process of its own that is given no more.
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include "host/qxbase.h"
#include "intakedl.h"
#include "tests/support/import_test.h"

namespace intake::testing {
namespace {

std::string lines(int count, const char* line = "\n") {
    std::string text;
    for (int each = 0; each < count; ++each) text += line;
    return text;
}

std::string print(const char* format, int first, int second = 0) {
    char text[128];
    std::snprintf(text, sizeof text, format, first, second);
    return text;
}

std::string eachOf(int count, const char* format) {
    std::string text;
    for (int each = 1; each <= count; ++each) text += print(format, each, each);
    return text;
}

std::string item(int start, int width, int type, char mark) {
    return print("ITEM            %3d-1%4d4-1   9-1", width, start) +
           print("%2d4-1  -1  -1-1", type) + std::string(16, ' ') + "   1" + mark + '\n';
}

std::string table(const char* name, int items, int records) {
    return name + std::string(30, ' ') + print("%4d%4d", items, items) +
           print("%4d%10d\n", 0, records);
}

std::string word(int value) {
    std::string text(4, '\0');
    for (int each = 0; each < 4; ++each) text[3 - each] = static_cast<char>(value >> 8 * each);
    return text;
}

// A catalogue of tables with names of one length, and with entries of tables that were erased.
std::string catalogue(int tables, int length, int erased) {
    std::string text = "QXTABLES" + word(2) + word(1) + word(8);
    for (int each = 1; each <= tables; ++each) {
        std::string name = "T" + std::to_string(each) + '.';
        name.resize(static_cast<std::size_t>(length), 'X');
        text += word(each) + word(length) + name;
    }
    for (int each = 1; each <= erased; ++each) text += word(-each) + word(0);
    return text;
}

struct Case {
    const char* name;
    std::string text;
    int32_t result;
    std::string message;         // what ends the import
    std::size_t megabytes = 0;   // of the largest record
    std::string catalogue = "";  // that lies in the workspace
};

std::vector<Case> cases() {
    const std::string end =
        "        -1         0         0         0         0         0         0\n";
    const std::string coverage = "ARC  2\n" + end;
    const std::string most = "2147483647";
    const std::string surface = "ENV  2\n\n\n\n\n\n\n\n\n";
    const std::string unreadable = "Could not read \"EOS\" in columns ";
    std::string wideItems;
    std::string subclasses;
    std::string tables;
    for (int each = 1; each <= 9998; ++each) wideItems += item(each, 999, 2, '-');
    for (int each = 1; each <= 3000; ++each) {
        subclasses += print("S%d\n", each) + "         1         1\n" + end;
        tables += table(print("T.%-2d", each % 90 + 10).c_str(), 1, 1) + item(1, 4, 5, '-') + "\n";
    }
    const std::string blankTx7 =
        "         1         1   2500000         0         0         0         0\n";
    return {
        {"tolerances", coverage + "TOL  2\n" + lines(1000000), 0, "Too many tolerances (IMPTOL)"},
        {"members of a stack", "STK  2\n         1    600000\n" + eachOf(600000, "%d\n") + "EOK\n",
         1, ""},
        {"a mask", surface + "TMK  2\n 360000000   4500000\n" + lines(4499999) + "1\n\n", 1, ""},
        {"surfaces", lines(60000, surface.c_str()), 1, ""},
        {"subclasses", "RXP  2\n" + subclasses + "JABBERWOCKY\n", 1, ""},
        {"tables", coverage + "IFO  2\n" + tables + "EOI\n", 1, ""},
        {"items beside a catalogue that is full but for one",
         coverage + "IFO  2\n" + table("T.AB", 9998, 3) + wideItems + lines(3 * 124851) + "EOI\n",
         1, "", 10, catalogue(32767, 63, 0)},
        {"an item index",
         coverage + "IFO  2\n" + table("T.AB", 1, 2500000) + item(1, 4, 5, 'I') + lines(2500000) +
             "EOI\n",
         1, ""},
        {"an arc", "ARC  2\n" + lines(6, "         1") + "   3000000\n" + lines(1500000) + end, 1,
         "", 46},
        {"an arc with an index",
         "SIN  2\n*    ARCS\nEOX\nARC  3\n" + lines(6, "         1") + "   3000000\n" +
             lines(3000000) + end + "IFO  2\nEOI\n",
         1, "", 46},
        {"an annotation with an index",
         "SIN  2\n*    TEXT\nEOX\nTX7  3\nA\n" + blankTx7 + lines(8) + lines(2500000) + "\n" + end +
             "JABBERWOCKY\nIFO  2\nEOI\n",
         1, "", 39},
        {"a row of a lattice", "LAT  2\n  12000000         1\n\n\n" + lines(3000000) + "\n", 1, "",
         46},
        {"a row of a grid",
         "GRD  2\n         1         1 1\n 1.0                  1.0\n\n  12000000.           1.\n" +
             lines(2400000) + "EOG\n",
         1, "", 46},
        {"a polygon", "PAL  2\n   3000000\n" + lines(1500000) + "        -1\n", 1, "", 35},
        {"a centroid", "CNT  2\n   8000000\n" + lines(1000000) + "        -1\n", 1, "", 31},
        {"an annotation",
         "TX7  2\nA\n" + blankTx7 + lines(8) + lines(2500000) + "\n" + end + "JABBERWOCKY\n", 1, "",
         39},
        {"address integers", "ADI  2\n  12000000\n" + lines(1000001) + "        -1\n", 1, "", 46},
        {"vertices that are not there", "ARC  3\n" + lines(6, "         1") + most + "\n", 0,
         unreadable + "1 to 21"},
        {"arcs that are not there", "PAL  2\n" + most + "\n", 0, unreadable + "1 to 10"},
        {"columns of a lattice that are not there", "LAT  2\n 268435456         2\n\n\n", 0,
         unreadable + "1 to 14"},
        {"columns of a grid that are not there",
         "GRD  2\n         1         1 1\n 1.0                  1.0\n\n 268435456.           "
         "1.\n\n",
         0, unreadable + "1 to 14"},
        {"a catalogue that is full but for one, and is written anew",
         coverage + "IFO  2\n" + table("T.AB", 0, 0) + table("T.AB", 0, 0) + "EOI\n", 1, "", 0,
         catalogue(32767, 63, 100000)},
        {"a catalogue of long names", coverage + "IFO  2\n" + table("T.AB", 0, 0) + "EOI\n", 0,
         "info/catalog: it is damaged", 0, catalogue(32767, 250, 0)},
        {"records that need no text", coverage + "IFO  2\n" + table("T.AB", 0, 1000001), 0,
         "Invalid record count (IMPINF)"},
    };
}

std::size_t addressSpace() {
    std::size_t pages = 0;
    std::FILE* file = std::fopen("/proc/self/statm", "r");
    if (!file || std::fscanf(file, "%zu", &pages) != 1) ::_exit(3);
    std::fclose(file);
    return pages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

class Memory : public ImportTest {};

TEST_F(Memory, StaysWithin32MebibytesAndTheLargestRecord) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "a sanitizer needs more address space than there is to give";
#endif
    std::vector<Case> all = cases();
    for (Case& each : all) {
        given("EXP  0 X\n" + each.text + "EOS\n");
        each.text = {};
        std::filesystem::remove_all(path("info"));
        std::filesystem::create_directory(path("info"));
        if (!each.catalogue.empty()) writeFile(path("info/catalog"), each.catalogue);
        each.catalogue = {};
        const pid_t child = fork();
        if (child == 0) {
            malloc_trim(0);
            constexpr std::size_t kMebibyte = 1 << 20;
            const rlim_t most = addressSpace() + (32 + each.megabytes) * kMebibyte;
            const rlimit limit = {most, most};
            if (setrlimit(RLIMIT_AS, &limit) != 0) ::_exit(3);
            const int32_t result = import(std::string("D") + std::to_string(&each - all.data()));
            const auto told = complaints();
            const bool right =
                result == each.result &&
                (each.message.empty()
                     ? told.empty()
                     : !told.empty() && told.back().find(each.message) != std::string::npos);
            if (!right)
                std::fprintf(stderr, "%s: %d %s\n", each.name, result,
                             told.empty() ? "" : told.back().c_str());
            ::_exit(right ? 0 : 1);
        }
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0) << each.name;
    }
}

}  // namespace
}  // namespace intake::testing
