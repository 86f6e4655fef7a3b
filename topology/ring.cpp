#include "topology/ring.h"

#include <algorithm>

namespace topology {

Box boxOf(std::span<const Point> points) {
    Box box{points.front(), points.front()};
    for (const Point& point : points) {
        box.least.x = std::min(box.least.x, point.x);
        box.least.y = std::min(box.least.y, point.y);
        box.greatest.x = std::max(box.greatest.x, point.x);
        box.greatest.y = std::max(box.greatest.y, point.y);
    }
    return box;
}

double areaOf(std::span<const Point> ring) {
    const Point origin = ring.front();
    // Two sums, as each addition has to wait for the one before it.
    double area[2] = {};
    std::size_t index = 1;
    const auto triangle = [&](std::size_t at) {
        const Point& a = ring[at - 1];
        const Point& b = ring[at];
        return (a.x - origin.x) * (b.y - origin.y) - (a.y - origin.y) * (b.x - origin.x);
    };
    for (; index + 1 < ring.size(); index += 2) {
        area[0] += triangle(index);
        area[1] += triangle(index + 1);
    }
    if (index < ring.size()) area[0] += triangle(index);
    return (area[0] + area[1]) / 2;
}

}  // namespace topology
