#include "topology/runs.h"

namespace topology {

void Runs::over(std::span<const Point> line) {
    line_ = line;
    boxes_.clear();
    levels_.clear();
    const std::size_t runs = (line.size() - 2) / kEdges + 1;
    boxes_.reserve(2 * runs + 64);
    levels_.push_back(0);
    for (std::size_t run = 0; run < runs; ++run) boxes_.push_back(boxOf(vertices(0, run)));
    while (boxes_.size() - levels_.back() > 1) {
        const std::size_t begin = levels_.back(), end = boxes_.size();
        levels_.push_back(end);
        for (std::size_t box = begin; box < end; box += 2) {
            boxes_.push_back(box + 1 < end ? joined(boxes_[box], boxes_[box + 1]) : boxes_[box]);
        }
    }
}

}  // namespace topology
