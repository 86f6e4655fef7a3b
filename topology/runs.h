// Boxes over runs of a line's edges, over pairs of runs, and so on: what is asked of a line looks
// at few of its edges.
#ifndef TOPOLOGY_RUNS_H
#define TOPOLOGY_RUNS_H

#include <cstdint>
#include <span>
#include <vector>

#include "topology/ring.h"

namespace topology {

// A run of the lowest level goes one way, in x or in y or in both, so its edges do not cross each
// other.
class Runs {
  public:
    Runs() = default;
    explicit Runs(std::span<const Point> line) { over(line); }
    // The vertices, at least two, have to outlive it or its next line.
    void over(std::span<const Point> line);

    std::size_t levels() const { return levels_.size(); }
    std::size_t size(std::size_t level) const {
        return (level + 1 < levels_.size() ? levels_[level + 1] : boxes_.size()) - levels_[level];
    }
    const Box& box(std::size_t level, std::size_t run) const {
        return boxes_[levels_[level] + run];
    }

    // The vertices of a run; the last one is the first of the run behind it.
    std::span<const Point> vertices(std::size_t level, std::size_t run) const {
        const std::size_t first = starts_[run << level];
        const std::size_t last = starts_[std::min((run + 1) << level, starts_.size() - 1)];
        return line_.subspan(first, last - first + 1);
    }

    // The part of a run of the lowest level that holds all its edges in a box, and few others.
    std::span<const Point> near(std::size_t run, const Box& box) const;

  private:
    enum class Way : uint8_t { right, left, up, down };
    std::size_t takeRun(std::size_t from);

    std::span<const Point> line_;
    std::vector<std::size_t> starts_;  // first vertices of the runs of the lowest level; the last
    std::vector<Way> ways_;            // of these runs
    std::vector<Box> boxes_;
    std::vector<std::size_t> levels_;  // where the boxes of each begin
};

}  // namespace topology

#endif
