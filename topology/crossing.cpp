#include "topology/crossing.h"

#include <cmath>
#include <vector>

#include "topology/runs.h"

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

class Search {
  public:
    explicit Search(std::span<const Point> line)
        : runs_(line), patience_(1000 + 64 * line.size()) {}

    // Two parts of the line are compared where their boxes meet, first whole, then their halves.
    bool found() {
        open_.push_back({runs_.levels() - 1, 0, 0});
        while (!open_.empty() && patience_ > 0) {
            --patience_;
            const auto [level, first, second] = open_.back();
            open_.pop_back();
            if (!runs_.box(level, first).meets(runs_.box(level, second))) continue;
            if (level == 0) {
                if (first == second ? within(first) : between(first, second)) return true;
                continue;
            }
            const std::size_t size = runs_.size(level - 1);
            for (std::size_t a = 2 * first; a <= 2 * first + 1 && a < size; ++a) {
                const std::size_t from = first == second ? a : 2 * second;
                for (std::size_t b = from; b <= 2 * second + 1 && b < size; ++b) {
                    open_.push_back({level - 1, a, b});
                }
            }
        }
        return false;
    }

  private:
    struct Pair {
        std::size_t level, first, second;
    };

    bool within(std::size_t run) {
        const std::span<const Point> line = runs_.vertices(0, run);
        for (std::size_t edge = 3; edge < line.size(); ++edge) {
            const Box box = boxOf(line[edge - 1], line[edge]);
            for (std::size_t other = 1; other + 1 < edge; ++other) {
                if (box.meets(boxOf(line[other - 1], line[other])) &&
                    cross(line[edge - 1], line[edge], line[other - 1], line[other])) {
                    return true;
                }
            }
        }
        return false;
    }

    // Edges that share a vertex do not cross, so neighbours need no care.
    bool between(std::size_t first, std::size_t second) {
        const Box& otherBox = runs_.box(0, second);
        const std::span<const Point> line = runs_.vertices(0, first);
        const std::span<const Point> others = runs_.vertices(0, second);
        for (std::size_t edge = 1; edge < line.size(); ++edge) {
            const Box box = boxOf(line[edge - 1], line[edge]);
            if (!box.meets(otherBox)) continue;
            for (std::size_t other = 1; other < others.size(); ++other) {
                if (box.meets(boxOf(others[other - 1], others[other])) &&
                    cross(line[edge - 1], line[edge], others[other - 1], others[other])) {
                    return true;
                }
            }
        }
        return false;
    }

    Runs runs_;
    std::size_t patience_;
    std::vector<Pair> open_;
};

}  // namespace

bool crossesItself(std::span<const Point> line) { return line.size() > 4 && Search(line).found(); }

}  // namespace topology
