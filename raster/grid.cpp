#include <bit>

#include "raster/grid_writer.h"
#include "raster/sections.h"
#include "stream/lines.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr std::string_view kEndOfGrid = "EOG";

// The formats of a grid have no scale: a real without an exponent is not shifted.
void readShape(GridShape& shape) {
    Line line;
    // The window follows from the bounds and the cell size; these are only read.
    int32_t columns = 0;
    int32_t rows = 0;
    IMPLIN(line);
    read<"2I10,I2,E21.14">(line, columns, rows, shape.cellType, shape.noData);
    IMPLIN(line);
    read<"2E21.14">(line, shape.cellSize[0], shape.cellSize[1]);
    IMPLIN(line);
    read<"2E21.14">(line, shape.bounds[0], shape.bounds[1]);
    IMPLIN(line);
    read<"2E21.14">(line, shape.bounds[2], shape.bounds[3]);
}

void readCells(const Line& line, int32_t cellType, GridCells& cells) {
    if (cellType == kIntegerCells) {
        read<"5I14">(line, cells[0], cells[1], cells[2], cells[3], cells[4]);
        return;
    }
    std::array<float, 5> reals{};
    read<"5E14.7">(line, reals[0], reals[1], reals[2], reals[3], reals[4]);
    cells = std::bit_cast<GridCells>(reals);
}

// Those of the next line; false at the end.
bool nextCells(int32_t cellType, GridCells& cells) {
    if (cellType == kIntegerCells) {
        if (takeLine<"5I14">(cells[0], cells[1], cells[2], cells[3], cells[4])) return true;
    } else {
        std::array<float, 5> reals;
        if (takeLine<"5E14.7">(reals[0], reals[1], reals[2], reals[3], reals[4])) {
            cells = std::bit_cast<GridCells>(reals);
            return true;
        }
    }
    Line line;
    IMPLIN(line);
    if (line == kEndOfGrid) return false;
    readCells(line, cellType, cells);
    return true;
}

}  // namespace

void IMPGRD(const Name& dataset, const bool& inStack, bool& skip, Status& status) {
    const bool refused = skip;
    skip = false;
    GridShape shape;
    readShape(shape);
    status = kReported;
    if (!refused) GRDCRE(dataset, shape, status);

    Line line;
    if (status != kSuccess && inStack) {
        skip = true;
        warn("   Grid %1% will be skipped.", dataset);
        status = kSuccess;
        do IMPLIN(line);
        while (!(line == kEndOfGrid));
        return;
    }
    if (status != kSuccess) {
        nonftl("Unable to create %1%.", dataset);
        return;
    }
    // The first line is one of cells whatever it holds.
    GridCells cells;
    IMPLIN(line);
    readCells(line, shape.cellType, cells);
    do {
        GRDWRT(cells, status);
        if (status == kNotWritten) {
            nonftl("Error in writing %1%.", dataset);
            break;
        }
    } while (nextCells(shape.cellType, cells));
    // Lines beyond the window are no failure: they are read and dropped.
    if (status != kNotWritten) status = kSuccess;
    GRDCLS();
}

}  // namespace intake
