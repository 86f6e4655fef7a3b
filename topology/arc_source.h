// Where arcs come from. Whoever has arcs tells them by number; nothing here knows of files.
#ifndef TOPOLOGY_ARC_SOURCE_H
#define TOPOLOGY_ARC_SOURCE_H

#include <cstdint>
#include <vector>

namespace topology {

struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};
static_assert(sizeof(Point) == 2 * sizeof(double), "points are handed on as pairs of reals");

class ArcSource {
  public:
    virtual ~ArcSource() = default;

    // Appends the vertices of an arc in the order in which they are stored. False, with nothing
    // appended, if there is no arc of that number or it cannot be read. Arcs are asked for in
    // ascending order within one shape, each at most once, and lately read ones not again.
    virtual bool vertices(int32_t number, std::vector<Point>& vertices) = 0;
};

}  // namespace topology

#endif
