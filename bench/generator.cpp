#include "bench/generator.h"

#include <cstdio>
#include <random>
#include <stdexcept>

namespace bench {

namespace {

std::mt19937_64 engine;

template <class... Values>
void print(std::string& text, const char* format, Values... values) {
    char buffer[256];
    const int length = std::snprintf(buffer, sizeof buffer, format, values...);
    text.append(buffer, static_cast<std::size_t>(length));
}

void integer(std::string& text, int64_t value) {
    print(text, "%10lld", static_cast<long long>(value));
}
void single(std::string& text, double value) { print(text, "%14.7E", value); }
void wide(std::string& text, double value) { print(text, "%21.14E", value); }

double coordinate() { return std::uniform_real_distribution<double>(-180, 180)(engine); }
int64_t below(int64_t limit) {
    return std::uniform_int_distribution<int64_t>(0, limit - 1)(engine);
}

constexpr char kSevenEnd[] =
    "        -1         0         0         0         0         0         0";

constexpr int64_t kVertices = 40;

void arcHead(std::string& text, uint64_t number) {
    integer(text, static_cast<int64_t>(number));
    for (int field = 0; field < 5; ++field) integer(text, below(1000000));
    integer(text, kVertices);
    text += '\n';
}
void arc(std::string& text, uint64_t number) {
    arcHead(text, number);
    for (int64_t vertex = 0; vertex < kVertices; ++vertex) {
        single(text, coordinate());
        single(text, coordinate());
        if (vertex % 2 == 1) text += '\n';
    }
}
void wideArc(std::string& text, uint64_t number) {
    arcHead(text, number);
    for (int64_t vertex = 0; vertex < kVertices; ++vertex) {
        wide(text, coordinate());
        wide(text, coordinate());
        text += '\n';
    }
}

void label(std::string& text, uint64_t number) {
    integer(text, static_cast<int64_t>(number));
    integer(text, below(1000000));
    const double x = coordinate();
    const double y = coordinate();
    single(text, x);
    single(text, y);
    text += '\n';
    for (const double value : {x, y, x, y}) single(text, value);
    text += '\n';
}

constexpr int64_t kSides = 20;

void polygon(std::string& text, uint64_t) {
    integer(text, kSides);
    for (int side = 0; side < 4; ++side) single(text, coordinate());
    text += '\n';
    for (int64_t side = 0; side < kSides; ++side) {
        // An arc that is gone along from its end has a negative number.
        integer(text, (below(2) == 0 ? 1 : -1) * below(1000000));
        for (int field = 0; field < 2; ++field) integer(text, below(1000000));
        if (side % 2 == 1) text += '\n';
    }
}

// Two points, no leaders, a text of 20 characters.
void annotation(std::string& text, uint64_t number) {
    for (const uint64_t field : {number % 1000 + 1, number % 7, 2UL, 0UL, 1UL, 1UL, 20UL, 0UL}) {
        integer(text, static_cast<int64_t>(field));
    }
    for (int table = 0; table < 2; ++table) {
        for (int index = 0; index < 20; ++index) {
            if (index % 7 == 0) text += '\n';
            integer(text, index < 2 ? 20 : 0);
        }
    }
    text += '\n';
    single(text, 0.5);
    text += '\n';
    for (int value = 0; value < 3; ++value) single(text, 0.25 * (value + 1));
    for (int point = 0; point < 2; ++point) {
        text += '\n';
        single(text, coordinate());
        single(text, coordinate());
    }
    text += "\nA name along a river\n";
}

// A row of a raster.
constexpr int kRowLines = 100;

void row(std::string& text, int cellsInLine, void (*cell)(std::string&)) {
    for (int line = 0; line < kRowLines; ++line) {
        for (int each = 0; each < cellsInLine; ++each) cell(text);
        text += '\n';
    }
}
void height(std::string& text) { single(text, 1000 + coordinate()); }
void code(std::string& text) {
    print(text, "%14lld", static_cast<long long>(below(110000) - 10000));
}
void floatCells(std::string& text, uint64_t) { row(text, 5, height); }
void integerCells(std::string& text, uint64_t) { row(text, 5, code); }
void latticeCells(std::string& text, uint64_t) { row(text, 4, height); }

// A record of 128 columns: two integers, six reals, a text of 22.
void tableRecord(std::string& text, uint64_t number) {
    std::string record;
    print(record, "%11llu%11lld", static_cast<unsigned long long>(number),
          static_cast<long long>(below(1000000)));
    for (int item = 0; item < 6; ++item) single(record, coordinate());
    print(record, "%-22s", "a name of somewhere");
    text.append(record, 0, 80).append("\n").append(record, 80, 48).append("\n");
}

// A record of 156 columns: two integers, four reals of 24 columns, two of 14, a text of 10.
void wideTableRecord(std::string& text, uint64_t number) {
    std::string record;
    print(record, "%11llu%11lld", static_cast<unsigned long long>(number),
          static_cast<long long>(below(1000000)));
    for (int item = 0; item < 4; ++item) print(record, "%24.17E", coordinate());
    for (int item = 0; item < 2; ++item) single(record, coordinate());
    print(record, "%-10s", "a name");
    text.append(record, 0, 80).append("\n").append(record, 80, 76).append("\n");
}

std::string item(const char* name, int width, int start, int outputWidth, int decimals, int type,
                 int number) {
    std::string line;
    print(line, "%-16s%3d-1%4d4-1%4d%2d%2d0-1  -1  -1-1%16s%4d-", name, width, start, outputWidth,
          decimals, type, "", number);
    return line;
}

std::vector<std::string> tableItems() {
    std::vector<std::string> lines = {item("ID", 4, 1, 5, -1, 5, 1),
                                      item("KIND", 4, 5, 5, -1, 5, 2)};
    for (int index = 0; index < 6; ++index) {
        const std::string name = "VALUE" + std::to_string(index);
        lines.push_back(item(name.c_str(), 4, 9 + 4 * index, 12, 3, 6, 3 + index));
    }
    lines.push_back(item("NAME", 22, 33, 22, -1, 2, 9));
    return lines;
}

std::vector<std::string> wideTableItems() {
    std::vector<std::string> lines = {item("ID", 4, 1, 5, -1, 5, 1),
                                      item("KIND", 4, 5, 5, -1, 5, 2)};
    for (int index = 0; index < 4; ++index) {
        const std::string name = "VALUE" + std::to_string(index);
        lines.push_back(item(name.c_str(), 8, 9 + 8 * index, 18, 5, 6, 3 + index));
    }
    lines.push_back(item("RATE", 4, 41, 12, 3, 6, 7));
    lines.push_back(item("SHARE", 4, 45, 12, 3, 6, 8));
    lines.push_back(item("NAME", 10, 49, 10, -1, 2, 9));
    return lines;
}

RecordLayout rowLayout(const Fields& fields) {
    return {std::vector<LineLayout>(kRowLines, {fields}), -1, {}, 1};
}

// A prologue has %r where the number of rows stands (10 columns), %R where it stands as a real.
const std::vector<Kind>& allKinds() {
    static const std::vector<Kind> all = {
        {"arcs_4E14.7", {}, {{{{7, 'I', 10}}}, 6, {{4, 'E', 14}}, 2}, "ARC  2", {kSevenEnd}, arc},
        {"arcs_2E21.14",
         {},
         {{{{7, 'I', 10}}}, 6, {{2, 'E', 21}}, 1},
         "ARC  3",
         {kSevenEnd},
         wideArc},
        {"labels",
         {},
         {{{{2, 'I', 10}, {2, 'E', 14}}, {{4, 'E', 14}}}, -1, {}, 1},
         "LAB  2",
         {"        -1         0 0.0000000E+00 0.0000000E+00"},
         label},
        {"polygons",
         {},
         {{{{1, 'I', 10}, {4, 'E', 14}}}, 0, {{6, 'I', 10}}, 2},
         "PAL  2",
         {kSevenEnd},
         polygon},
        {"annotation",
         {"LEVEL1       "},
         {{{{8, 'I', 10}},
           {{7, 'I', 10}},
           {{7, 'I', 10}},
           {{6, 'I', 10}},
           {{7, 'I', 10}},
           {{7, 'I', 10}},
           {{6, 'I', 10}},
           {{1, 'E', 14}},
           {{3, 'E', 14}},
           {{2, 'E', 14}},
           {{2, 'E', 14}},
           {{1, 'A', 20}}},
          -1,
          {},
          1},
         "TX7  2",
         {kSevenEnd, "JABBERWOCKY"},
         annotation},
        {"grid_5E14.7",
         {"       500        %r 2-3.40282346638529E+38",
          " 1.00000000000000E+00 1.00000000000000E+00",
          " 0.00000000000000E+00 0.00000000000000E+00", " 5.00000000000000E+02%R"},
         rowLayout({5, 'E', 14}),
         "GRD  2",
         {"EOG"},
         floatCells},
        {"grid_5I14",
         {"       500        %r 1-2.14748364700000E+09",
          " 1.00000000000000E+00 1.00000000000000E+00",
          " 0.00000000000000E+00 0.00000000000000E+00", " 5.00000000000000E+02%R"},
         rowLayout({5, 'I', 14}),
         "GRD  2",
         {"EOG"},
         integerCells},
        {"lattice",
         {"       400        %r", " 0.0000000E+00 0.0000000E+00 1.0000000E+00 1.0000000E+00",
          " 0.0000000E+00 2.0000000E+03"},
         rowLayout({4, 'E', 14}),
         "LAT  2",
         {"EOS"},
         latticeCells},
        {"table_128",
         {},
         {{{{2, 'I', 11}, {6, 'E', 14}, {1, 'A', 22}}}, -1, {}, 1, 2},
         "IFO  2",
         {"EOI"},
         tableRecord},
        {"table_156",
         {},
         {{{{2, 'I', 11}, {4, 'E', 24}, {2, 'E', 14}, {1, 'A', 10}}}, -1, {}, 1, 2},
         "IFO  2",
         {"EOI"},
         wideTableRecord},
    };
    return all;
}

}  // namespace

std::span<const Kind> kinds() { return allKinds(); }

const Kind& kind(const std::string& name) {
    for (const Kind& each : allKinds()) {
        if (each.name == name) return each;
    }
    throw std::out_of_range(name);
}

Generated generate(const Kind& kind, std::size_t bytes) {
    engine.seed(20180621);
    std::string body;
    body.reserve(bytes + 8192);
    uint64_t records = 0;
    while (body.size() < bytes) kind.record(body, ++records);

    std::string text = "EXP  0 BENCH.E00\n" + std::string(kind.header) + "\n";
    std::string count;
    print(count, "%10llu", static_cast<unsigned long long>(records));
    if (kind.header == std::string("IFO  2")) {
        print(text, "%-34s%4d%4d%4d%s\n", "BENCH.DAT", 9, 9, 58, count.c_str());
        const bool wide = kind.record == wideTableRecord;
        for (const std::string& line : wide ? wideTableItems() : tableItems()) text += line + "\n";
    }
    for (std::string line : kind.prologue) {
        if (const auto at = line.find("%r"); at != std::string::npos) {
            line.replace(at - 8, 10, count);
        }
        if (const auto at = line.find("%R"); at != std::string::npos) {
            std::string rows;
            wide(rows, static_cast<double>(records));
            line.replace(at, 2, rows);
        }
        text += line + "\n";
    }
    text += body;
    for (const std::string& line : kind.epilogue) text += line + "\n";
    return {text + "EOS\n", records};
}

}  // namespace bench
