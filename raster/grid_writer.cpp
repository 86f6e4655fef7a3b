#include "raster/grid_writer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <string>

#include "host/qxbase.h"
#include "host/qxfeat.h"
#include "host/qxgridio.h"
#include "raster/sections.h"

namespace intake {

GridState GRDSTA;

namespace {

constexpr int32_t kNoIntegerData = QX_MISSING_INTEGER;
constexpr int32_t kSignificantDigits = 7;

// Truncated toward zero. What no 32-bit cell can hold becomes a number that no cell is equal to.
int64_t integerNoData(double value) {
    const double whole = std::trunc(value);
    const bool fits = whole >= std::numeric_limits<int32_t>::min() &&
                      whole <= std::numeric_limits<int32_t>::max();
    return fits ? static_cast<int64_t>(whole) : std::numeric_limits<int64_t>::max();
}

// The cells as the row keeps them.
void storeCells(std::span<const int32_t> cells, int32_t* row) {
    if (GRDSTA.cellType == kIntegerCells) {
        std::transform(cells.begin(), cells.end(), row,
                       [noData = GRDSTA.integerNoData](int32_t cell) {
                           return cell == noData ? kNoIntegerData : cell;
                       });
        return;
    }
    std::transform(cells.begin(), cells.end(), row, [noData = GRDSTA.floatNoData](int32_t cell) {
        return std::bit_cast<float>(cell) == noData ? std::bit_cast<int32_t>(MISSINGFLOAT) : cell;
    });
}

// More room for the row at hand. It grows with the cells that are read, up to all columns.
bool makeRoom() {
    constexpr int32_t kStep = 1 << 18;
    const int32_t room = GRDSTA.rowRoom;
    const int32_t more = std::max({16384, std::min(room, kStep), room / 64});
    const int32_t cells = std::min(room + more, GRDSTA.columns);
    void* row = room == 0 ? CAllocate1(cells, 4) : CResize1(GRDSTA.row, cells, 4);
    if (!row) return false;
    GRDSTA.row = static_cast<int32_t*>(row);
    GRDSTA.rowRoom = cells;
    return true;
}

}  // namespace

void GRDCRE(const Name& dataset, const GridShape& shape, Status& status) {
    std::array<char, Name::kLength + 1> name;
    f772c(name.data(), dataset.data(), static_cast<int32_t>(Name::kLength));
    GridIOInit();
    const std::array<int32_t, 6> descriptor = {0, 0, 0, -1, shape.cellType, 0};
    const double* cellSize = shape.cellSize.data();
    const double* bounds = shape.bounds.data();
    status = kReported;
    GRDCLS();
    const int32_t channel = CellLyrCreate(name.data(), 2, 1, descriptor.data(), cellSize, bounds);
    if (channel < 0) return;
    GRDSTA.channel = channel;
    if (PrivateWindowSet(channel, bounds, cellSize, bounds) >= 0) {
        GRDSTA.rows = PrivateWindowRows(channel);
        GRDSTA.columns = PrivateWindowCols(channel);
        GRDSTA.cellType = shape.cellType;
        // The no-data value has fourteen decimals in the file and the cells only seven.
        if (shape.cellType == kIntegerCells) {
            GRDSTA.integerNoData = integerNoData(shape.noData);
        } else {
            GRDSTA.floatNoData =
                static_cast<float>(call(d_sigdig, shape.noData, kSignificantDigits));
        }
        if (makeRoom()) {
            status = kSuccess;
            return;
        }
    }
    GRDCLS();
    CellLyrDelete(name.data());
}

void GRDWRT(std::span<const int32_t> cells, Status& status) {
    status = kNotWritten;
    if (GRDSTA.channel < 0) return;
    status = kWindowFull;
    // Behind the last row the column cursor is back at 0.
    if (GRDSTA.rowCursor >= GRDSTA.rows) return;
    status = kSuccess;
    const auto left = static_cast<std::size_t>(GRDSTA.columns - GRDSTA.columnCursor);
    const auto kept = cells.first(std::min(cells.size(), left));
    const auto end = GRDSTA.columnCursor + static_cast<int32_t>(kept.size());
    if (end > GRDSTA.rowRoom && !makeRoom()) {
        status = kNotWritten;
        return;
    }
    storeCells(kept, GRDSTA.row + GRDSTA.columnCursor);
    GRDSTA.columnCursor = end;
    if (GRDSTA.columnCursor < GRDSTA.columns) return;
    if (PutWindowRow(GRDSTA.channel, GRDSTA.rowCursor, GRDSTA.row) < 0) status = kNotWritten;
    ++GRDSTA.rowCursor;
    GRDSTA.columnCursor = 0;
}

void GRDCLS() {
    if (GRDSTA.channel >= 0) CellLyrChannelClose(GRDSTA.channel);
    if (GRDSTA.row) CFree1(GRDSTA.row);
    GRDSTA = {};
}

void rearmRaster() { GRDCLS(); }

}  // namespace intake
