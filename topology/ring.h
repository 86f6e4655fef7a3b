// One closed line, and what can be told of it in one pass.
#ifndef TOPOLOGY_RING_H
#define TOPOLOGY_RING_H

#include <cstddef>
#include <span>

#include "topology/arc_source.h"

namespace topology {

struct Box {
    Point least;
    Point greatest;

    bool holds(const Point& point) const {
        return least.x <= point.x && point.x <= greatest.x && least.y <= point.y &&
               point.y <= greatest.y;
    }
    bool holds(const Box& other) const { return holds(other.least) && holds(other.greatest); }
};
Box boxOf(std::span<const Point> points);

struct Ring {
    std::size_t begin = 0;  // its vertices in a pool, the last one equal to the first
    std::size_t end = 0;
    Box box;
    double area = 0;  // positive if it goes counter-clockwise
    // It goes round more or less often than once, which no ring does that does not cross itself.
    bool crosses = false;
};

// Of vertices whose last is equal to the first.
Ring measureRing(std::span<const Point> points);

}  // namespace topology

#endif
