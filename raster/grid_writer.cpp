#include "raster/grid_writer.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>
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

// What is no data in the file becomes what is none in the row.
void markNoData(std::span<int32_t> row) {
    if (GRDSTA.cellType != kIntegerCells) {
        for (int32_t& cell : row) {
            const bool noData = std::bit_cast<float>(cell) == GRDSTA.floatNoData;
            cell = noData ? std::bit_cast<int32_t>(MISSINGFLOAT) : cell;
        }
    } else if (GRDSTA.integerNoData <= std::numeric_limits<int32_t>::max()) {
        const auto noData = static_cast<int32_t>(GRDSTA.integerNoData);
        for (int32_t& cell : row) cell = cell == noData ? kNoIntegerData : cell;
    }
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

void GRDWRT(const GridCells& cells, Status& status) {
    status = kNotWritten;
    if (GRDSTA.channel < 0) return;
    status = kWindowFull;
    // Behind the last row the column cursor is back at 0.
    if (GRDSTA.rowCursor >= GRDSTA.rows) return;
    status = kSuccess;
    const int32_t kept =
        std::min(static_cast<int32_t>(cells.size()), GRDSTA.columns - GRDSTA.columnCursor);
    if (GRDSTA.columnCursor + kept > GRDSTA.rowRoom && !makeRoom()) {
        status = kNotWritten;
        return;
    }
    int32_t* const place = GRDSTA.row + GRDSTA.columnCursor;
    if (kept == static_cast<int32_t>(cells.size())) {
        std::memcpy(place, cells.data(), sizeof cells);
    } else {
        std::copy_n(cells.begin(), kept, place);
    }
    GRDSTA.columnCursor += kept;
    if (GRDSTA.columnCursor < GRDSTA.columns) return;
    markNoData({GRDSTA.row, static_cast<std::size_t>(GRDSTA.columns)});
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
