// The grid of 256 by 256 cells over a coverage's extent, on which an index sees the boxes of
// features.
#ifndef COVERAGE_SPATIAL_INDEX_GRID_H
#define COVERAGE_SPATIAL_INDEX_GRID_H

#include <array>
#include <cstdint>

namespace intake {

using Box = std::array<double, 4>;  // xmin, ymin, xmax, ymax

struct GridBox {
    int32_t xMin = 0;
    int32_t yMin = 0;
    int32_t xMax = 0;
    int32_t yMax = 0;

    // One byte a side, the minimum of x the highest.
    int32_t packed() const {
        const auto byte = [](int32_t cell) { return static_cast<uint32_t>(cell); };
        return static_cast<int32_t>(byte(xMin) << 24 | byte(yMin) << 16 | byte(xMax) << 8 |
                                    byte(yMax));
    }
};

class Grid {
  public:
    static constexpr int32_t kCells = 256;

    Grid() : Grid(Box{}) {}
    // The bounds are rounded to 32 bits first, as a reader of the index finds them.
    explicit Grid(const Box& extent);

    const std::array<float, 4>& extent() const { return extent_; }
    GridBox map(const Box& box) const;

  private:
    std::array<float, 4> extent_;
    float xScale_;
    float yScale_;
};

}  // namespace intake

#endif
