#include "topology/ring.h"

#include <algorithm>

namespace topology {

Box boxOf(std::span<const Point> points) {
    // Two boxes, as each comparison has to wait for the one before it.
    Box box{points.front(), points.front()};
    Box other = box;
    std::size_t index = 1;
    for (; index + 1 < points.size(); index += 2) {
        box = joined(box, {points[index], points[index]});
        other = joined(other, {points[index + 1], points[index + 1]});
    }
    if (index < points.size()) box = joined(box, {points[index], points[index]});
    return joined(box, other);
}

double areaOf(std::span<const Point> line) {
    const Point origin = line.front();
    // Sums in turn, as each addition has to wait for the one before it.
    double sums[4] = {};
    Point last;
    const auto triangle = [&](const Point& point) {
        const Point next{point.x - origin.x, point.y - origin.y};
        const double twice = last.x * next.y - last.y * next.x;
        last = next;
        return twice;
    };
    std::size_t index = 1;
    for (; index + 3 < line.size(); index += 4) {
        sums[0] += triangle(line[index]);
        sums[1] += triangle(line[index + 1]);
        sums[2] += triangle(line[index + 2]);
        sums[3] += triangle(line[index + 3]);
    }
    for (; index < line.size(); ++index) sums[index % 4] += triangle(line[index]);
    return ((sums[0] + sums[1]) + (sums[2] + sums[3])) / 2;
}

}  // namespace topology
