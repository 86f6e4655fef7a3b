// TMK: the mask over the triangles of a surface.
#include <algorithm>

#include "host/qxbase.h"
#include "stream/fields.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "tin/member_files.h"
#include "tin/sections.h"

namespace intake {

namespace {

constexpr int64_t kBitsOnLine = 77;

// Sets the bits of one line; its first stands for the bit behind those of the lines before.
void readBits(const Line& line, int64_t before, int64_t bitCount, Handle bitmap) {
    const int64_t count = std::min(kBitsOnLine, bitCount - before);
    for (int64_t column = 1; column <= count; ++column) {
        const auto place = static_cast<std::size_t>(column);
        const auto flag = integerField<int32_t>(line.columns(place, place), place);
        if (flag == 1) call(bitset_, static_cast<int32_t>(before + column), 1, bitmap);
    }
}

// Writes the bitmap as the surface's mask.
void TMSKWT(const Name& surface, Handle bitmap) {
    Name path;
    tifnam(surface, path, kMaskFile);
    Handle file{};
    Status status = kSuccess;
    call(vcreat_, file, path, kMaskFile, 0, 0, 0, 1, status);
    if (status == kSuccess) {
        call(bitwtr_, file, 1, bitmap, status);
        call(vclose_, file);
    }
    if (status != kSuccess) fatal("Unable to write MSK structure (IMTMSK).");
}

}  // namespace

void IMTMSK(const Name& surface, Status& status) {
    Handle bitmap{};
    call(bitcre_, bitmap);
    call(bitclr_, bitmap);
    Line line;
    IMPLIN(line);
    int32_t bitCount = 0;
    int32_t lineCount = 0;
    read<"2I10">(line, bitCount, lineCount);
    if (bitCount < 0 || lineCount < 0) fatal("Invalid mask count (IMTMSK)");
    for (int64_t number = 0; number < lineCount; ++number) {
        IMPLIN(line);
        readBits(line, number * kBitsOnLine, bitCount, bitmap);
    }
    TMSKWT(surface, bitmap);
    IMPLIN(line);
    call(bitcls_, bitmap);
    status = kSuccess;
}

}  // namespace intake
