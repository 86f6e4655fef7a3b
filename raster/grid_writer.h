// The one grid that is being written, cell after cell from its top row on.
#ifndef RASTER_GRID_WRITER_H
#define RASTER_GRID_WRITER_H

#include <array>

#include "stream/types.h"

namespace intake {

inline constexpr int32_t kIntegerCells = 1;

// Statuses of GRDWRT.
inline constexpr Status kWindowFull = -1;
inline constexpr Status kNotWritten = -2;

struct GridState {
    int32_t channel = -1;      // of the cell layer, -1 while none is open
    int32_t* row = nullptr;    // words of the row at hand, made and freed by the raster library
    int32_t rowRoom = 0;       // cells that it has room for
    int32_t rowCursor = 0;     // next row to write
    int32_t columnCursor = 0;  // next column of the row at hand
    int32_t rows = 0;
    int32_t columns = 0;
    int32_t cellType = 0;
    int64_t integerNoData = 0;  // wider than a cell: a value that fits none meets none
    float floatNoData = 0;
};

extern GridState GRDSTA;

struct GridShape {
    int32_t cellType = 0;  // kIntegerCells, any other for single-precision cells
    double noData = 0;
    std::array<double, 2> cellSize{};
    std::array<double, 4> bounds{};  // lowest x, y, highest x, y
};

// Creates a grid and opens it. status kReported if it cannot be made, and nothing is left of it.
void GRDCRE(const Name& dataset, const GridShape& shape, Status& status);

// The cells of a line, as 32-bit words of the grid's cell type.
using GridCells = std::array<int32_t, 5>;

// Takes the next cells of a row; what goes beyond the end
// of the row is dropped. status kWindowFull if all rows are there, kNotWritten if no grid is open
// or a full row could not be written.
void GRDWRT(const GridCells& cells, Status& status);

// Closes the grid; a row that is not full is dropped.
void GRDCLS();

}  // namespace intake

#endif
