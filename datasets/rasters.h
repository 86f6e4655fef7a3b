// Lattices and grids: rows of cells from the top one down.
#ifndef DATASETS_RASTERS_H
#define DATASETS_RASTERS_H

#include <array>
#include <bit>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "datasets/point.h"
#include "datasets/range.h"
#include "host/qxgridio/nodata.h"
#include "host/qxgridio/rasters.h"

namespace datasets {

// A lattice or grid that is open for reading; false if there is none of the kind at the path.
class Raster {
  public:
    Raster() = default;
    Raster(std::string_view path, QxRasterKind kind);
    explicit operator bool() const { return bool(handle_); }

    // Sides, cells and place. Sides may be 0 or negative in a lattice. The header of a damaged file
    // may claim far more columns and rows than what is stored; only rowsWritten of them are.
    const QxRaster& shape() const { return shape_; }
    bool isInteger() const { return shape_.cellType == QX_INTEGER_CELLS; }
    // Where a cell's value holds, column and row from 0 at the top left: the mesh point of a
    // lattice, the centre of a grid's cell.
    Point place(int32_t column, int32_t row) const;
    // What the raster covers: from the first mesh point to the last, or the edges of all cells.
    Box box() const;

    // Reads cells of a row from a column on, both from 0, as words: integers, or the bits of single
    // reals. A row that was not written has no data. False if they are not inside the raster.
    bool read(int32_t row, int32_t column, std::span<int32_t> cells) const;
    // The value of a word; nothing for no data.
    std::optional<double> value(int32_t word) const {
        if (isInteger()) return word == QX_MISSING_INTEGER ? std::nullopt : std::optional(word);
        const auto real = std::bit_cast<float>(word);
        return real == MISSINGFLOAT ? std::nullopt : std::optional(real);
    }

  private:
    Handle<rascls_> handle_;
    QxRasterKind kind_ = QX_GRID;
    QxRaster shape_{};
};

// A row in pieces: a row takes no more memory than that, however wide it claims to be.
class RowCursor {
  public:
    using Element = std::span<const int32_t>;
    RowCursor(const Raster& raster, int32_t row) : raster_(raster), row_(row) {}
    explicit operator bool() const { return bool(raster_); }
    bool next();
    const Element& current() const { return piece_; }

  private:
    const Raster& raster_;
    int32_t row_;
    int32_t column_ = 0;
    std::array<int32_t, 4096> cells_;
    Element piece_;
};

// The words of a row (see Raster::read) of a raster that outlives the range:
//     for (const std::span<const int32_t>& words : rowOf(raster, row)) ...
inline Range<RowCursor> rowOf(const Raster& raster, int32_t row) { return {raster, row}; }

// The paths of the tables of a grid's values and of its statistics, which need not be there.
inline std::string valueTable(std::string_view grid) { return std::string(grid) + ".VAT"; }
inline std::string statisticsTable(std::string_view grid) { return std::string(grid) + ".STA"; }

}  // namespace datasets

#endif
