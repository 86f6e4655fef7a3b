#include "topology/inside.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace topology {

namespace {

bool passes(const Point& from, const Point& to, const Point& point) {
    return (from.y > point.y) != (to.y > point.y);
}

// How one edge that is neither beside the point nor wholly to its right changes the outcome.
Where edgeCrossing(const Point& from, const Point& to, const Point& point) {
    const double left = (to.x - from.x) * (point.y - from.y);
    const double right = (to.y - from.y) * (point.x - from.x);
    const double cross = left - right;
    // Each factor and product is rounded once; four roundings stay below this.
    if (std::fabs(cross) <= 1e-15 * (std::fabs(left) + std::fabs(right))) {
        const bool matters = passes(from, to, point) || boxOf(from, to).holds(point);
        return matters ? Where::Unsure : Where::Outside;
    }
    if (!passes(from, to, point)) return Where::Outside;
    return (cross > 0) == (to.y > from.y) ? Where::Inside : Where::Outside;
}

}  // namespace

Where InsideTest::where(const Point& point) const {
    struct Run {
        std::size_t level, index;
    };
    std::array<Run, 128> open;
    std::size_t depth = 0;
    open[depth++] = {runs_.levels() - 1, 0};
    bool inside = false;
    while (depth > 0) {
        const auto [level, index] = open[--depth];
        const Box& box = runs_.box(level, index);
        if (point.y < box.least.y || point.y > box.greatest.y || point.x > box.greatest.x) continue;
        const std::span<const Point> vertices = runs_.vertices(level, index);
        if (point.x < box.least.x) {
            inside ^= passes(vertices.front(), vertices.back(), point);
        } else if (level > 0) {
            open[depth++] = {level - 1, 2 * index};
            if (2 * index + 1 < runs_.size(level - 1)) open[depth++] = {level - 1, 2 * index + 1};
        } else {
            for (std::size_t edge = 1; edge < vertices.size(); ++edge) {
                const Where crossing = edgeCrossing(vertices[edge - 1], vertices[edge], point);
                if (crossing == Where::Unsure) return Where::Unsure;
                inside ^= crossing == Where::Inside;
            }
        }
    }
    return inside ? Where::Inside : Where::Outside;
}

bool InsideTest::holds(std::span<const Point> other) const {
    for (const Point& point : other) {
        const Where found = where(point);
        if (found != Where::Unsure) return found == Where::Inside;
    }
    for (std::size_t edge = 1; edge < other.size(); ++edge) {
        const Point& a = other[edge - 1];
        const Point& b = other[edge];
        const Where found = where({a.x + (b.x - a.x) / 2, a.y + (b.y - a.y) / 2});
        if (found != Where::Unsure) return found == Where::Inside;
    }
    return false;
}

}  // namespace topology
