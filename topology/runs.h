// Boxes over runs of a line's edges, over pairs of runs, and so on: what is asked of a line looks
// at few of its edges.
#ifndef TOPOLOGY_RUNS_H
#define TOPOLOGY_RUNS_H

#include <cstdint>
#include <span>
#include <vector>

#include "topology/ring.h"

namespace topology {

// Vertices that go one way, in x or in y or in both, so that their edges do not cross each other.
struct Run {
    enum class Way : uint8_t { right, left, up, down };
    Way way{};
    uint32_t last = 0;  // its last vertex, which is the first of the run behind it
    Box box{};
};

// Appends the runs of a line of at least two vertices.
void cutIntoRuns(std::span<const Point> line, std::vector<Run>& runs);

// What is asked of a line by way of its runs, which are the boxes of the lowest level.
class Runs {
  public:
    Runs() = default;
    explicit Runs(std::span<const Point> line) { over(line); }
    // The vertices, at least two, have to outlive it or its next line.
    void over(std::span<const Point> line);

    // The same for a line that is put together of lines whose runs are known: each begins with the
    // last vertex of the one before it, and may be turned.
    void startLine();
    void addPart(std::span<const Run> runs, bool turned);
    void finishLine(std::span<const Point> line);

    std::size_t vertexCount() const { return line_.size(); }
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
    void add(Run::Way way, std::size_t last, const Box& box);

    std::span<const Point> line_;
    std::vector<std::size_t> starts_;  // first vertices of the runs of the lowest level; the last
    std::vector<Run::Way> ways_;       // of these runs
    std::vector<Box> boxes_;           // of all levels
    std::vector<std::size_t> levels_;  // where the boxes of each begin
};

}  // namespace topology

#endif
