#include "coverage/spatial_index/grid.h"

namespace intake {

namespace {

constexpr double kLastCell = Grid::kCells - 1;

float scaleOf(float low, float high) {
    const double width = double{high} - double{low};
    return static_cast<float>(width == 0 ? kLastCell : kLastCell / width);
}

// The cell of a place, held to the grid; what is not a number lies at 0.
int32_t cell(double place) {
    if (!(place > 0)) return 0;
    return static_cast<int32_t>(place < kLastCell ? place : kLastCell);
}

}  // namespace

Grid::Grid(const Box& extent) {
    for (std::size_t side = 0; side < 4; ++side) extent_[side] = static_cast<float>(extent[side]);
    xScale_ = scaleOf(extent_[0], extent_[2]);
    yScale_ = scaleOf(extent_[1], extent_[3]);
}

GridBox Grid::map(const Box& box) const {
    const auto x = [&](double value) { return (value - extent_[0]) * xScale_; };
    const auto y = [&](double value) { return (value - extent_[1]) * yScale_; };
    return {cell(x(box[0])), cell(y(box[1])), cell(x(box[2]) + 1), cell(y(box[3]) + 1)};
}

}  // namespace intake
