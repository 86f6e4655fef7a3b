#include "topology/inside.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace topology {

namespace {

Box joined(const Box& first, const Box& second) {
    return {{std::min(first.least.x, second.least.x), std::min(first.least.y, second.least.y)},
            {std::max(first.greatest.x, second.greatest.x),
             std::max(first.greatest.y, second.greatest.y)}};
}

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
        const bool matters = passes(from, to, point) || boxOf(std::array{from, to}).holds(point);
        return matters ? Where::Unsure : Where::Outside;
    }
    if (!passes(from, to, point)) return Where::Outside;
    return (cross > 0) == (to.y > from.y) ? Where::Inside : Where::Outside;
}

}  // namespace

InsideTest::InsideTest(std::span<const Point> ring) : ring_(ring) {
    levels_.push_back(0);
    for (std::size_t first = 0; first + 1 < ring.size(); first += kRun) {
        boxes_.push_back(boxOf(ring.subspan(first, std::min(kRun + 1, ring.size() - first))));
    }
    while (boxes_.size() - levels_.back() > 1) {
        const std::size_t begin = levels_.back(), end = boxes_.size();
        levels_.push_back(end);
        for (std::size_t box = begin; box < end; box += 2) {
            boxes_.push_back(joined(boxes_[box], boxes_[std::min(box + 1, end - 1)]));
        }
    }
}

Where InsideTest::where(const Point& point) const {
    struct Run {
        std::size_t level, index;
    };
    std::array<Run, 128> open;
    std::size_t depth = 0;
    open[depth++] = {levels_.size() - 1, 0};
    bool inside = false;
    while (depth > 0) {
        const Run run = open[--depth];
        const Box& box = boxes_[levels_[run.level] + run.index];
        if (point.y < box.least.y || point.y > box.greatest.y || point.x > box.greatest.x) continue;
        const std::size_t edges = kRun << run.level;
        const std::size_t first = run.index * edges;
        const std::size_t last = std::min(first + edges, ring_.size() - 1);
        if (point.x < box.least.x) {
            inside ^= passes(ring_[first], ring_[last], point);
        } else if (run.level > 0) {
            const std::size_t below = 2 * run.index;
            open[depth++] = {run.level - 1, below};
            if (levels_[run.level - 1] + below + 1 < levels_[run.level]) {
                open[depth++] = {run.level - 1, below + 1};
            }
        } else {
            for (std::size_t edge = first; edge < last; ++edge) {
                const Where crossing = edgeCrossing(ring_[edge], ring_[edge + 1], point);
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
