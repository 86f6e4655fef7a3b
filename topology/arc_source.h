// Where arcs come from. Whoever has arcs tells them by number; nothing here knows of files.
#ifndef TOPOLOGY_ARC_SOURCE_H
#define TOPOLOGY_ARC_SOURCE_H

#include <cstdint>
#include <span>

namespace topology {

struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};
static_assert(sizeof(Point) == 2 * sizeof(double), "points are handed on as pairs of reals");

// The same as points; a last real without a partner is none.
inline std::span<const Point> pointsOf(std::span<const double> pairs) {
    return {reinterpret_cast<const Point*>(pairs.data()), pairs.size() / 2};
}

inline std::span<const double> pairsOf(std::span<const Point> points) {
    return {reinterpret_cast<const double*>(points.data()), points.size() * 2};
}

class ArcSource {
  public:
    virtual ~ArcSource() = default;

    // The vertices of an arc in the order in which they are stored, as pairs of reals that stay
    // until the next call. False if there is no arc of that number or it cannot be read. Arcs are
    // asked for in ascending order within one shape, each at most once, and lately read ones not
    // again.
    virtual bool vertices(int32_t number, std::span<const double>& pairs) = 0;
};

}  // namespace topology

#endif
