#include "datasets/rasters.h"

#include "app/intake/dump/dump.h"

namespace program {

namespace {

using datasets::Raster;

void putCell(JsonLine& line, int32_t cell, bool integer) {
    if (integer) {
        cell == QX_MISSING_INTEGER ? line.null() : line.value(cell);
        return;
    }
    const auto value = std::bit_cast<float>(cell);
    value == MISSINGFLOAT ? line.null() : line.value(value);
}

// The rows that were written; a raster may claim far more.
void dumpRows(Dump& dump, const Raster& raster) {
    if (!dump.wants("row")) return;
    for (int32_t row = 0; row < raster.shape().rowsWritten; ++row) {
        JsonLine line(dump.output(), "row");
        line.field("number", row).key("cells").beginList();
        for (const auto& cells : datasets::rowOf(raster, row)) {
            for (const int32_t cell : cells) putCell(line, cell, raster.isInteger());
        }
        line.endList();
    }
}

std::span<const double> pair(const double (&values)[2]) { return {values, 2}; }

}  // namespace

void dumpLattice(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    const Raster lattice(dataset.path, QX_LATTICE);
    if (!lattice) return;
    const QxRaster& shape = lattice.shape();
    if (dump.wants("lattice")) {
        JsonLine line(dump.output(), "lattice");
        line.field("columns", shape.columns).field("rows", shape.rows);
        line.field("origin", pair(shape.lowerLeft)).field("spacing", pair(shape.cellSize));
        line.field("range", pair(shape.range));
    }
    dumpRows(dump, lattice);
    dumpSideTexts(dump, dataset.path);
}

void dumpGrid(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    const Raster grid(dataset.path, QX_GRID);
    if (!grid) return;
    const QxRaster& shape = grid.shape();
    if (dump.wants("grid")) {
        JsonLine line(dump.output(), "grid");
        line.field("columns", shape.columns).field("rows", shape.rows);
        line.field("cellType", grid.isInteger() ? "integer" : "float");
        line.field("cellSize", pair(shape.cellSize));
        line.field("bounds", std::span<const double>(grid.box()));
    }
    dumpRows(dump, grid);
    dumpSideTexts(dump, dataset.path);
    dumpTables(dump, dataset.path);
}

}  // namespace program
