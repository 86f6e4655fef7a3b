#include "topology/runs.h"

namespace topology {

namespace {

constexpr std::size_t kMostEdges = 32;

// The first vertex behind those that go one way from a vertex on.
std::size_t oneWay(std::span<const Point> line, std::size_t from) {
    const std::size_t end = std::min(from + kMostEdges + 1, line.size());
    bool right = true, left = true, up = true, down = true;
    std::size_t vertex = from + 1;
    for (; vertex < end; ++vertex) {
        const Point& a = line[vertex - 1];
        const Point& b = line[vertex];
        right &= b.x >= a.x;
        left &= b.x <= a.x;
        up &= b.y >= a.y;
        down &= b.y <= a.y;
        if (!(right | left | up | down)) break;
    }
    return vertex;
}

}  // namespace

void Runs::over(std::span<const Point> line) {
    line_ = line;
    starts_.assign(1, 0);
    boxes_.clear();
    levels_.assign(1, 0);
    while (starts_.back() + 1 < line.size()) {
        const std::size_t first = starts_.back(), end = oneWay(line, first);
        boxes_.push_back(boxOf(line.subspan(first, end - first)));
        starts_.push_back(end - 1);
    }
    while (boxes_.size() - levels_.back() > 1) {
        const std::size_t begin = levels_.back(), end = boxes_.size();
        levels_.push_back(end);
        for (std::size_t box = begin; box < end; box += 2) {
            boxes_.push_back(box + 1 < end ? joined(boxes_[box], boxes_[box + 1]) : boxes_[box]);
        }
    }
}

}  // namespace topology
