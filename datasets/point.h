// Places and rectangles, in the units of their dataset.
#ifndef DATASETS_POINT_H
#define DATASETS_POINT_H

#include <array>
#include <span>

namespace datasets {

struct Point {
    double x = 0;
    double y = 0;
};
static_assert(sizeof(Point) == 2 * sizeof(double), "operations give pairs of reals");

// The same as pairs of reals: x, y, x, y, ...
inline std::span<const double> coordinates(std::span<const Point> points) {
    return {reinterpret_cast<const double*>(points.data()), points.size() * 2};
}

using Box = std::array<double, 4>;  // xmin, ymin, xmax, ymax

// Whether two rectangles have a point in common; none has with a side that is no number.
inline bool meets(const Box& first, const Box& second) {
    return first[0] <= second[2] && second[0] <= first[2] && first[1] <= second[3] &&
           second[1] <= first[3];
}

}  // namespace datasets

#endif
