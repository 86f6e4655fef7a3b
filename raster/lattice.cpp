#include <bit>
#include <cmath>
#include <cstring>

#include "host/cpp/growing_bytes.h"
#include "host/qxgridio.h"
#include "raster/sections.h"
#include "stream/lines.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr int32_t kCellsInLine = 4;

// -9.999E13 as single precision knows it.
constexpr float kFileNoData = std::bit_cast<float>(0xD6B5E179U);

// In single precision throughout; a difference that is not a number is no sign of no data.
bool isNoData(float cell) { return std::fabs(cell - kFileNoData) < 10000000.0F; }

// The first cells of the next line; what stands behind them is not looked at.
void readCells(int32_t count, std::array<float, kCellsInLine>& cells) {
    if (count == kCellsInLine) {
        IMPLIN<"1P,4E14.7">(cells[0], cells[1], cells[2], cells[3]);
        return;
    }
    Line line;
    IMPLIN(line);
    for (int32_t cell = 0; cell < count; ++cell) {
        const auto first = static_cast<std::size_t>(cell) * 14 + 1;
        cells[static_cast<std::size_t>(cell)] =
            static_cast<float>(realField(line.columns(first, first + 13), first, 7));
    }
}

// A row grows as its lines arrive, whatever the width says.
void readRow(int32_t columns, float noData, qx::GrowingBytes& row) {
    row.resize(0);
    std::array<float, kCellsInLine> cells{};
    for (int32_t left = columns; left > 0; left -= kCellsInLine) {
        const int32_t count = left < kCellsInLine ? left : kCellsInLine;
        readCells(count, cells);
        for (float& cell : cells) cell = isNoData(cell) ? noData : cell;
        const std::size_t before = row.size();
        const std::size_t bytes = static_cast<std::size_t>(count) * sizeof(float);
        row.resize(before + bytes);
        std::memcpy(row.data() + before, cells.data(), bytes);
    }
}

}  // namespace

void IMPLAT(const Name& dataset, Status& status) {
    int32_t exists = 0;
    call(latexi_, dataset, exists);
    if (exists & 1) {
        nonftl("%1% already exists", dataset);
        status = kReported;
        return;
    }
    float noData = 0;
    call(fltndt_, noData);

    Line line;
    int32_t columns = 0;
    int32_t rows = 0;
    IMPLIN(line);
    read<"2I10">(line, columns, rows);
    float originX = 0, originY = 0, spacingX = 0, spacingY = 0;
    IMPLIN(line);
    read<"1P,4E14.7">(line, originX, originY, spacingX, spacingY);
    float lowest = 0, highest = 0;
    IMPLIN(line);
    read<"1P,2E14.7">(line, lowest, highest);

    Handle lattice{};
    call(latcre_, dataset, lattice, columns, rows, double{originX}, double{originY},
         double{spacingX}, double{spacingY}, status);
    if (status != kSuccess) {
        nonftl("Cannot create lattice %1%", dataset);
        status = kReported;
        return;
    }
    call(latrng_, lattice, lowest, highest);
    qx::GrowingBytes heights;
    // Without columns a row has no lines.
    for (int32_t row = 0; columns > 0 && row < rows; ++row) {
        readRow(columns, noData, heights);
        Status ignoredStatus = kSuccess;
        call(latwt_, lattice, ignoredStatus, reinterpret_cast<const float*>(heights.data()),
             columns);
    }
    // One more line belongs to the section, whatever it holds.
    IMPLIN(line);
    call(latcls_, lattice, status);
    status = kSuccess;
}

}  // namespace intake
