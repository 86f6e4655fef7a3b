#include "topology/ring.h"

#include <algorithm>
#include <cmath>

namespace topology {

namespace {

// Counts how often a line goes round: how often its direction passes east.
class Turns {
  public:
    void go(double x, double y) {
        if (x == 0 && y == 0) return;
        const bool up = y > 0 || (y == 0 && x > 0);
        if (any_ && up != up_) {
            const double left = x_ * y, right = y_ * x;
            const double cross = left - right;
            // Straight back, or so nearly that it cannot be told to which side.
            if (std::fabs(cross) <= 1e-14 * (std::fabs(left) + std::fabs(right))) {
                unsure_ = true;
            } else if (up == (cross > 0)) {
                count_ += up ? 1 : -1;
            }
        }
        any_ = true;
        up_ = up;
        x_ = x;
        y_ = y;
    }
    bool unsure() const { return unsure_; }
    int count() const { return count_; }

  private:
    double x_ = 0, y_ = 0;
    int count_ = 0;
    bool up_ = false, any_ = false, unsure_ = false;
};

}  // namespace

Box boxOf(std::span<const Point> points) {
    Box box{points.front(), points.front()};
    for (const Point& point : points) {
        box.least.x = std::min(box.least.x, point.x);
        box.least.y = std::min(box.least.y, point.y);
        box.greatest.x = std::max(box.greatest.x, point.x);
        box.greatest.y = std::max(box.greatest.y, point.y);
    }
    return box;
}

Ring measureRing(std::span<const Point> points) {
    Ring ring;
    ring.box = boxOf(points);
    const Point origin = points.front();
    Turns turns;
    for (std::size_t index = 1; index < points.size(); ++index) {
        const Point& a = points[index - 1];
        const Point& b = points[index];
        ring.area += (a.x - origin.x) * (b.y - origin.y) - (a.y - origin.y) * (b.x - origin.x);
        turns.go(b.x - a.x, b.y - a.y);
    }
    ring.area /= 2;
    // The first direction once more, for the turn at the first vertex.
    for (std::size_t index = 1; index < points.size(); ++index) {
        if (points[index] == points[index - 1]) continue;
        turns.go(points[index].x - points[index - 1].x, points[index].y - points[index - 1].y);
        break;
    }
    ring.crosses = !turns.unsure() && turns.count() != (ring.area < 0 ? -1 : 1);
    return ring;
}

}  // namespace topology
