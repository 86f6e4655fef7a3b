#include "topology/crossing.h"

#include <cmath>

namespace topology {

namespace {

// On which side of a line a point lies: 1 left, -1 right, 0 on it or too near to tell.
int side(const Point& from, const Point& to, const Point& point) {
    const double left = (to.x - from.x) * (point.y - from.y);
    const double right = (to.y - from.y) * (point.x - from.x);
    const double cross = left - right;
    if (std::fabs(cross) <= 1e-15 * (std::fabs(left) + std::fabs(right))) return 0;
    return cross > 0 ? 1 : -1;
}

bool cross(const Point& a, const Point& b, const Point& c, const Point& d) {
    return side(a, b, c) * side(a, b, d) < 0 && side(c, d, a) * side(c, d, b) < 0;
}

}  // namespace

bool CrossingSearch::fewCross() const {
    const std::size_t count = runs.size(0);
    for (std::size_t first = 0; first < count; ++first) {
        for (std::size_t second = first + 1; second < count; ++second) {
            if (runs.box(0, first).meets(runs.box(0, second)) && between(first, second)) {
                return true;
            }
        }
    }
    return false;
}

// Two parts of the line are compared where their boxes meet, first whole, then their halves.
bool CrossingSearch::linesCross() {
    constexpr std::size_t kFew = 8;
    if (runs.size(0) <= kFew) return fewCross();
    open_.assign(1, {runs.levels() - 1, 0, 0});
    for (std::size_t patience = 1000 + 64 * runs.vertexCount(); !open_.empty() && patience > 0;
         --patience) {
        const auto [level, first, second] = open_.back();
        open_.pop_back();
        if (level == 0) {
            if (first != second && between(first, second)) return true;
            continue;
        }
        const std::size_t below = level - 1, size = runs.size(below);
        for (std::size_t a = 2 * first; a <= 2 * first + 1 && a < size; ++a) {
            const std::size_t from = first == second ? a : 2 * second;
            for (std::size_t b = from; b <= 2 * second + 1 && b < size; ++b) {
                if (a == b || runs.box(below, a).meets(runs.box(below, b))) {
                    open_.push_back({below, a, b});
                }
            }
        }
    }
    return false;
}

// Edges that share a vertex do not cross, so neighbours need no care.
bool CrossingSearch::between(std::size_t first, std::size_t second) const {
    const std::span<const Point> line = runs.near(first, runs.box(0, second));
    const std::span<const Point> others = runs.near(second, runs.box(0, first));
    for (std::size_t edge = 1; edge < line.size(); ++edge) {
        const Box box = boxOf(line[edge - 1], line[edge]);
        for (std::size_t other = 1; other < others.size(); ++other) {
            if (box.meets(boxOf(others[other - 1], others[other])) &&
                cross(line[edge - 1], line[edge], others[other - 1], others[other])) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace topology
