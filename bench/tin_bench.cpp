// A surface of a million nodes, beside a plain reader of the same lines; and how much memory an
// import of it takes at its height.
#include <cstdio>
#include <fstream>
#include <memory>

#include "bench/measure.h"
#include "bench/memory.h"
#include "bench/plain_reader.h"
#include "bench/workspace.h"

namespace bench {

namespace {

constexpr int kSide = 1000;
constexpr int kNodes = kSide * kSide;
constexpr int kTriangles = 2 * (kSide - 1) * (kSide - 1);
constexpr int kHull = 4 * (kSide - 1);

// A section's numbers on their lines. A chunk of coordinates ends in the middle of a line.
struct Section {
    const char* header;
    int count;
    int chunk;
    int perLine;
    int width;
    const char* format;
    double (*value)(int index);
};

double coordinate(int index) {
    const int node = index / 2;
    return index % 2 == 0 ? -180.0 + node % kSide * 0.001 : 90.0 - node / kSide * 0.001;
}
double height(int index) { return index % 977 == 0 ? -3.4028235e38 : 100 + index % 900 * 0.25; }
double node(int index) { return 1 + index % kNodes; }
double edge(int index) { return index % 1000 == 0 ? -999999999 : index % (3 * kTriangles); }

constexpr Section kSections[] = {
    {"NXY  2", 2 * kNodes, 3750, 4, 14, "%14.7E", coordinate},
    {"NZ   2", kNodes, 15000, 4, 14, "%14.7E", height},
    {"NOD  2", 3 * kTriangles, 15000, 6, 10, "%10.0f", node},
    {"EDG  2", 3 * kTriangles, 15000, 6, 10, "%10.0f", edge},
    {"HUL  2", kHull, 15000, 6, 10, "%10.0f", node},
};

constexpr char kEnd[] = "        -1         0         0         0         0         0         0\n";

const fs::path& surfaceFile() {
    static const fs::path path = folder() / "tin.e00";
    if (fs::exists(path)) return path;
    std::ofstream file(path, std::ios::binary);
    char text[128];
    std::snprintf(text, sizeof text, "%10d%10d%10d0\n", kNodes, kTriangles, kHull);
    file << "EXP  0 TIN.E00\nENV  2\n" << text << text << text;
    for (const int values : {4, 5}) {
        for (int value = 0; value < values; ++value) file << " 7.0001000E+00";
        file << '\n';
    }
    file << kEnd;
    for (const Section& section : kSections) {
        file << section.header << '\n';
        for (int index = 0; index < section.count; ++index) {
            if (index != 0 && index % section.chunk % section.perLine == 0) file << '\n';
            std::snprintf(text, sizeof text, section.format, section.value(index));
            file << text;
        }
        file << '\n' << kEnd;
    }
    file << "EOS\n";
    require(file.good(), "the surface's file is written");
    return path;
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// Every field of every line cut and converted by the C library, and written as it is.
void readPlainly(const fs::path& path) {
    const File in(std::fopen(path.c_str(), "r"), std::fclose);
    const File out(std::fopen((folder() / "plain").c_str(), "w"), std::fclose);
    require(in && out, "files for the plain reader");
    char line[128];
    const auto next = [&] { return std::fgets(line, sizeof line, in.get()) != nullptr; };
    for (int skipped = 0; skipped < 8; ++skipped) next();
    for (const Section& section : kSections) {
        next();
        for (int index = 0; index < section.count; ++index) {
            const int field = index % section.chunk % section.perLine;
            if (field == 0) next();
            const char* text = line + field * section.width;
            if (section.width == 10) {
                const int32_t value = plainInteger(text, section.width);
                std::fwrite(&value, sizeof value, 1, out.get());
            } else {
                const double value = plainReal(text, section.width);
                std::fwrite(&value, sizeof value, 1, out.get());
            }
        }
        require(next(), "a closing line");
    }
}

// The import must not grow with the surface.
void importFlat() {
    constexpr long kMostKilobytes = 8 * 1024;
    requireWithin(kMostKilobytes, [] { import(surfaceFile()); });
}

// The first import is held against what it should have stored.
void prepare() {
    static bool checked = false;
    surfaceFile();
    clearWorkspace();
    if (checked) return;
    constexpr std::size_t kExpected = kNodes * 20UL + kTriangles * 24UL + kHull * 4UL + 96;
    importFlat();
    require(storedBytes() == kExpected, "all nodes, triangles and hull entries are stored");
    clearWorkspace();
    checked = true;
}

}  // namespace

void registerTin() {
    constexpr std::size_t kTextBytes =
        kNodes * 3UL * 14 + kTriangles * 6UL * 10 + kHull * 10UL;  // line ends and heads apart
    Comparison comparison("import/tin_million_nodes", kTextBytes);
    comparison.add(
        "plain", [] { readPlainly(surfaceFile()); }, [] { surfaceFile(); });
    comparison.add("intake", importFlat, prepare).rounds(importRounds()).run();
}

}  // namespace bench
