#include "topology/runs.h"

namespace topology {

namespace {

constexpr std::size_t kMostEdges = 32;
constexpr std::size_t kFewVertices = 6;  // less to look at than to search

}  // namespace

// Takes the run that begins at a vertex, and gives the vertex where the next one begins.
std::size_t Runs::takeRun(std::size_t from) {
    bool right = true, left = true, up = true, down = true;
    Way way = Way::right;
    const std::size_t most = std::min(from + kMostEdges, line_.size() - 1);
    Point a = line_[from];
    Box box{a, a};
    for (; from < most; ++from) {
        const Point b = line_[from + 1];
        right &= b.x >= a.x;
        left &= b.x <= a.x;
        up &= b.y >= a.y;
        down &= b.y <= a.y;
        if (!(right | left | up | down)) break;
        way = right ? Way::right : left ? Way::left : up ? Way::up : Way::down;
        box = joined(box, {b, b});
        a = b;
    }
    ways_.push_back(way);
    boxes_.push_back(box);
    return from;
}

void Runs::over(std::span<const Point> line) {
    line_ = line;
    starts_.assign(1, 0);
    ways_.clear();
    boxes_.clear();
    levels_.assign(1, 0);
    while (starts_.back() + 1 < line.size()) {
        starts_.push_back(takeRun(starts_.back()));
    }
    while (boxes_.size() - levels_.back() > 1) {
        const std::size_t begin = levels_.back(), end = boxes_.size();
        levels_.push_back(end);
        for (std::size_t box = begin; box < end; box += 2) {
            boxes_.push_back(box + 1 < end ? joined(boxes_[box], boxes_[box + 1]) : boxes_[box]);
        }
    }
}

std::span<const Point> Runs::near(std::size_t run, const Box& box) const {
    const std::span<const Point> line = vertices(0, run);
    if (line.size() <= kFewVertices) return line;
    const auto between = [&](auto&& before, auto&& notBehind) {
        auto first = std::partition_point(line.begin(), line.end(), before);
        auto last = std::partition_point(first, line.end(), notBehind);
        if (first != line.begin()) --first;
        if (last != line.end()) ++last;
        return std::span<const Point>(first, last);
    };
    switch (ways_[run]) {
        case Way::right:
            return between([&](const Point& point) { return point.x < box.least.x; },
                           [&](const Point& point) { return point.x <= box.greatest.x; });
        case Way::left:
            return between([&](const Point& point) { return point.x > box.greatest.x; },
                           [&](const Point& point) { return point.x >= box.least.x; });
        case Way::up:
            return between([&](const Point& point) { return point.y < box.least.y; },
                           [&](const Point& point) { return point.y <= box.greatest.y; });
        default:
            return between([&](const Point& point) { return point.y > box.greatest.y; },
                           [&](const Point& point) { return point.y >= box.least.y; });
    }
}

}  // namespace topology
