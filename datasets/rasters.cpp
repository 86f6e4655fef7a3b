#include "datasets/rasters.h"

#include <algorithm>

#include "host/cpp/call.h"

namespace datasets {

using qx::call;

Raster::Raster(std::string_view path, QxRasterKind kind)
    : handle_(Handle<rascls_>::opened(rasopn_, path, int32_t{kind})), kind_(kind) {
    int32_t status = 0;
    call(rasdes_, handle_.number(), shape_, status);
}

Point Raster::place(int32_t column, int32_t row) const {
    const double half = kind_ == QX_GRID ? 0.5 : 0;
    return {shape_.lowerLeft[0] + (column + half) * shape_.cellSize[0],
            shape_.upperRight[1] - (row + half) * shape_.cellSize[1]};
}

Box Raster::box() const {
    return {shape_.lowerLeft[0], shape_.lowerLeft[1], shape_.upperRight[0], shape_.upperRight[1]};
}

bool Raster::read(int32_t row, int32_t column, std::span<int32_t> cells) const {
    int32_t status = 0;
    call(rasrd_, handle_.number(), row, column, static_cast<int32_t>(cells.size()),
         static_cast<void*>(cells.data()), status);
    return status == 0;
}

bool RowCursor::next() {
    const auto left = static_cast<std::size_t>(std::max(raster_.shape().columns - column_, 0));
    const std::span<int32_t> cells(cells_.data(), std::min(left, cells_.size()));
    piece_ = cells;
    const int32_t first = column_;
    column_ += static_cast<int32_t>(cells.size());
    return !cells.empty() && raster_.read(row_, first, cells);
}

}  // namespace datasets
