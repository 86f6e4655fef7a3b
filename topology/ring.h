// Closed lines, and what is easily told of them.
#ifndef TOPOLOGY_RING_H
#define TOPOLOGY_RING_H

#include <algorithm>
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
    bool meets(const Box& other) const {
        return least.x <= other.greatest.x && other.least.x <= greatest.x &&
               least.y <= other.greatest.y && other.least.y <= greatest.y;
    }
};
inline Box boxOf(const Point& from, const Point& to) {
    return {{std::min(from.x, to.x), std::min(from.y, to.y)},
            {std::max(from.x, to.x), std::max(from.y, to.y)}};
}
inline Box joined(const Box& first, const Box& second) {
    return {{std::min(first.least.x, second.least.x), std::min(first.least.y, second.least.y)},
            {std::max(first.greatest.x, second.greatest.x),
             std::max(first.greatest.y, second.greatest.y)}};
}
Box boxOf(std::span<const Point> points);

// Positive of a line that goes counter-clockwise; it is closed by the straight way back to its
// first vertex.
double areaOf(std::span<const Point> line);

struct Ring {
    std::size_t begin = 0;  // its vertices in a pool
    std::size_t end = 0;
    double area = 0;
    Box box{};
};

}  // namespace topology

#endif
