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
    double area = 0;
    for (std::size_t index = 1; index < ring.size(); ++index) {
        const Point& a = ring[index - 1];
        const Point& b = ring[index];
        area += (a.x - origin.x) * (b.y - origin.y) - (a.y - origin.y) * (b.x - origin.x);
    }
    return area / 2;
}

}  // namespace topology
