#include <algorithm>
#include <bit>

#include "app/intake/dump/dump.h"
#include "app/intake/dump/side_files.h"
#include "app/intake/dump/tables.h"
#include "host/cpp/call.h"
#include "host/qxgridio.h"

namespace program {

namespace {

using qx::call;

// An open lattice or grid with its description.
class Raster {
  public:
    Raster(const Dataset& dataset, int32_t kind) {
        int32_t status = 0;
        call(rasopn_, handle_, std::string_view(dataset.path), kind, status);
        open_ = status == 0;
        if (open_) call(rasdes_, handle_, description_, status);
    }
    ~Raster() {
        if (open_) call(rascls_, handle_);
    }
    Raster(const Raster&) = delete;
    Raster& operator=(const Raster&) = delete;

    bool isOpen() const { return open_; }
    const QxRaster& description() const { return description_; }
    // Cells of a row that was written; false where there are none.
    bool read(int32_t row, int32_t column, std::span<int32_t> cells) const {
        int32_t status = 0;
        call(rasrd_, handle_, row, column, static_cast<int32_t>(cells.size()),
             static_cast<void*>(cells.data()), status);
        return status == 0;
    }

  private:
    int32_t handle_ = 0;
    bool open_ = false;
    QxRaster description_{};
};

void putCell(JsonLine& line, int32_t cell, int32_t cellType) {
    if (cellType == QX_INTEGER_CELLS) {
        cell == QX_MISSING_INTEGER ? line.null() : line.value(cell);
        return;
    }
    const auto value = std::bit_cast<float>(cell);
    value == MISSINGFLOAT ? line.null() : line.value(value);
}

// The rows that were written; a raster may claim far more. A row is read in pieces.
void dumpRows(Dump& dump, const Raster& raster) {
    const QxRaster& shape = raster.description();
    std::array<int32_t, 4096> cells;
    const auto piece = static_cast<int32_t>(cells.size());
    for (int32_t row = 0; row < shape.rowsWritten; ++row) {
        JsonLine line(dump.output(), "row");
        line.field("number", row).key("cells").beginList();
        for (int32_t column = 0; column < shape.columns; column += piece) {
            const auto count = static_cast<std::size_t>(std::min(piece, shape.columns - column));
            const std::span<int32_t> read(cells.data(), count);
            if (!raster.read(row, column, read)) break;
            for (const int32_t cell : read) putCell(line, cell, shape.cellType);
        }
        line.endList();
    }
}

std::span<const double> pair(const double (&values)[2]) { return {values, 2}; }

}  // namespace

void dumpLattice(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    const Raster lattice(dataset, QX_LATTICE);
    if (!lattice.isOpen()) return;
    const QxRaster& shape = lattice.description();
    if (dump.wants("lattice")) {
        JsonLine line(dump.output(), "lattice");
        line.field("columns", shape.columns).field("rows", shape.rows);
        line.field("origin", pair(shape.lowerLeft)).field("spacing", pair(shape.cellSize));
        line.field("range", pair(shape.range));
    }
    if (dump.wants("row")) dumpRows(dump, lattice);
    dumpSideTexts(dump, dataset.path);
}

void dumpGrid(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    const Raster grid(dataset, QX_GRID);
    if (!grid.isOpen()) return;
    const QxRaster& shape = grid.description();
    if (dump.wants("grid")) {
        const double bounds[] = {shape.lowerLeft[0], shape.lowerLeft[1], shape.upperRight[0],
                                 shape.upperRight[1]};
        JsonLine line(dump.output(), "grid");
        line.field("columns", shape.columns).field("rows", shape.rows);
        line.field("cellType", shape.cellType == QX_INTEGER_CELLS ? "integer" : "float");
        line.field("cellSize", pair(shape.cellSize));
        line.field("bounds", std::span<const double>(bounds));
    }
    if (dump.wants("row")) dumpRows(dump, grid);
    dumpSideTexts(dump, dataset.path);
    dumpTables(dump, dataset.path);
}

}  // namespace program
