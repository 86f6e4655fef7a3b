// Whether a point lies inside a ring, asked many times of one ring.
#ifndef TOPOLOGY_INSIDE_H
#define TOPOLOGY_INSIDE_H

#include <span>

#include "topology/runs.h"

namespace topology {

enum class Where { Outside, Inside, Unsure };

// A run of edges beside the point costs nothing, and one wholly to its right no more than a look at
// its two ends.
class InsideTest {
  public:
    // The vertices have to outlive the test; the last is equal to the first.
    explicit InsideTest(std::span<const Point> ring) : runs_(ring) {}

    // Unsure on the line, and so near it that rounding could decide.
    Where where(const Point& point) const;

    // Whether another ring, which does not cross this one but may touch it, lies inside: decided by
    // the first of its vertices, or of the middles of its edges, that is not on this one's line.
    bool holds(std::span<const Point> other) const;

  private:
    Runs runs_;
};

}  // namespace topology

#endif
