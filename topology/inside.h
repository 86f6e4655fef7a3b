// Whether a point lies inside a ring, asked many times of one ring.
#ifndef TOPOLOGY_INSIDE_H
#define TOPOLOGY_INSIDE_H

#include <cstdint>
#include <span>
#include <vector>

#include "topology/ring.h"

namespace topology {

enum class Where { Outside, Inside, Unsure };

// Keeps boxes over runs of the ring's vertices and over runs of these. A run beside the point costs
// nothing, and one wholly to its right no more than a look at its two ends.
class InsideTest {
  public:
    // The vertices have to outlive the test; the last is equal to the first.
    explicit InsideTest(std::span<const Point> ring);

    // Unsure on the line, and so near it that rounding could decide.
    Where where(const Point& point) const;

    // Whether another ring, which does not cross this one but may touch it, lies inside: decided by
    // the first of its vertices, or of the middles of its edges, that is not on this one's line.
    bool holds(std::span<const Point> other) const;

  private:
    static constexpr std::size_t kRun = 8;  // edges

    std::span<const Point> ring_;
    // Boxes of the runs, then of pairs of them, and so on; where each level begins.
    std::vector<Box> boxes_;
    std::vector<std::size_t> levels_;
};

}  // namespace topology

#endif
