#include "bench/fortran_reader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "bench/measure.h"

namespace bench {

#ifdef BENCH_HAS_FORTRAN

extern "C" void read_records(const char* path, const char* output, const int32_t* shape,
                             const int32_t* passed, int64_t* records, int32_t path_length,
                             int32_t output_length);

namespace {

// In the order of the shapes that the Fortran side knows.
constexpr std::array<std::string_view, 5> kShapes = {"arcs_4E14.7", "arcs_2E21.14", "grid_5E14.7",
                                                     "grid_5I14", "table_128"};
constexpr int32_t kItems = 10;  // lines of a table's head

}  // namespace

bool fortranReads(const Kind& kind) {
    return std::find(kShapes.begin(), kShapes.end(), kind.name) != kShapes.end();
}

void readByFortran(const std::string& path, const Kind& kind, const std::string& output) {
    const auto place = std::find(kShapes.begin(), kShapes.end(), kind.name);
    const auto shape = static_cast<int32_t>(place - kShapes.begin() + 1);
    const bool table = std::strncmp(kind.header, "IFO", 3) == 0;
    const auto passed = static_cast<int32_t>(2 + kind.prologue.size()) + (table ? kItems : 0);
    int64_t records = 0;
    read_records(path.data(), output.data(), &shape, &passed, &records,
                 static_cast<int32_t>(path.size()), static_cast<int32_t>(output.size()));
    require(records > 0, "the Fortran reader finds records");
}

#else

bool fortranReads(const Kind&) { return false; }
void readByFortran(const std::string&, const Kind&, const std::string&) {}

#endif

}  // namespace bench
