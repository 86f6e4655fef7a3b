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

Ring measureRing(std::span<const Point> points) {
    Ring ring;
    ring.box = boxOf(points);
    const Point origin = points.front();
    for (std::size_t index = 1; index < points.size(); ++index) {
        const Point& a = points[index - 1];
        const Point& b = points[index];
        ring.area += (a.x - origin.x) * (b.y - origin.y) - (a.y - origin.y) * (b.x - origin.x);
    }
    ring.area /= 2;
    return ring;
}

}  // namespace topology
