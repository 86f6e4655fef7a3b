#include "topology/tracing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

namespace topology {

namespace {

constexpr uint32_t kNone = ~uint32_t{0};

bool before(const Point& first, const Point& second) {
    return first.x != second.x ? first.x < second.x : first.y < second.y;
}

// Grows counter-clockwise as the angle of a direction does, from 0 to 4.
double turn(const Point& from, const Point& to) {
    const double x = to.x - from.x;
    const double y = to.y - from.y;
    const double length = std::fabs(x) + std::fabs(y);
    if (!(length > 0)) return 0;
    const double part = x / length;
    return y < 0 ? 3 + part : 1 - part;
}

// An edge between two joints: places where edges start.
struct Link {
    uint32_t from = kNone;
    uint32_t to = kNone;  // none if no edge starts where this one ends
    double leaving = 0;   // its direction at its start
    double back = 0;      // the direction from its end back along it
    bool gone = false;    // part of a walk, or of none
};

class Tracer {
  public:
    Tracer(const Edges& edges, Walks& walks) : edges_(edges), walks_(walks) {
        link();
        if (!balanced()) dropLooseEnds();
        for (uint32_t edge = 0; edge < links_.size(); ++edge) {
            if (!links_[edge].gone) walk(edge);
        }
        std::ranges::sort(walks_.left);
    }

  private:
    Point start(uint32_t edge) const { return edges_.start(edges_.edges[edge]); }
    Point finish(uint32_t edge) const { return edges_.finish(edges_.edges[edge]); }

    // The first vertex along the edge that lies elsewhere than its end there.
    double direction(const Edge& edge, bool fromStart) const {
        const bool up = edge.backwards != fromStart;
        const Point end = edges_.pool[up ? edge.begin : edge.end - 1];
        for (std::size_t step = 1; step < edge.end - edge.begin; ++step) {
            const Point& next = edges_.pool[up ? edge.begin + step : edge.end - 1 - step];
            if (next != end) return turn(end, next);
        }
        return 0;
    }

    void link() {
        const auto count = static_cast<uint32_t>(edges_.edges.size());
        links_.resize(count);
        order_.resize(count);
        std::iota(order_.begin(), order_.end(), 0U);
        for (uint32_t edge = 0; edge < count; ++edge) {
            links_[edge].leaving = direction(edges_.edges[edge], true);
            links_[edge].back = direction(edges_.edges[edge], false);
        }
        std::ranges::sort(order_, [&](uint32_t first, uint32_t second) {
            const Point a = start(first), b = start(second);
            if (a != b) return before(a, b);
            if (links_[first].leaving != links_[second].leaving) {
                return links_[first].leaving < links_[second].leaving;
            }
            return first < second;
        });
        for (uint32_t place = 0; place < count; ++place) {
            if (place == 0 || start(order_[place]) != start(order_[place - 1])) {
                joints_.push_back(place);
            }
            links_[order_[place]].from = static_cast<uint32_t>(joints_.size() - 1);
        }
        const auto joints = static_cast<uint32_t>(joints_.size());
        joints_.push_back(count);
        for (uint32_t edge = 0; edge < count; ++edge) {
            const Point end = finish(edge);
            const auto found = std::partition_point(
                joints_.begin(), joints_.end() - 1,
                [&](uint32_t place) { return before(start(order_[place]), end); });
            const auto joint = static_cast<uint32_t>(found - joints_.begin());
            if (joint < joints && start(order_[*found]) == end) links_[edge].to = joint;
        }
        skip_.resize(count);
        std::iota(skip_.begin(), skip_.end(), 0U);
        placeOf_.resize(count);
        for (uint32_t place = 0; place < count; ++place) placeOf_[order_[place]] = place;
        onWalk_.assign(joints, kNone);
    }

    // Whether as many edges end at each joint as start there. Then no walk gets stuck.
    bool balanced() {
        arriving_.assign(onWalk_.size(), 0);
        for (const Link& link : links_) {
            if (link.to == kNone) return false;
            ++arriving_[link.to];
        }
        for (std::size_t joint = 0; joint < arriving_.size(); ++joint) {
            if (arriving_[joint] != joints_[joint + 1] - joints_[joint]) return false;
        }
        return true;
    }

    // Takes away edges that lead nowhere or come from nowhere, and what hangs on them alone.
    void dropLooseEnds() {
        const std::size_t joints = onWalk_.size();
        std::vector<uint32_t> leaving(joints);
        for (std::size_t joint = 0; joint < joints; ++joint) {
            leaving[joint] = joints_[joint + 1] - joints_[joint];
        }
        std::vector<uint32_t> ending;  // edges by the joint where they end
        for (uint32_t edge = 0; edge < links_.size(); ++edge) {
            if (links_[edge].to != kNone) ending.push_back(edge);
        }
        std::ranges::stable_sort(ending, {}, [&](uint32_t edge) { return links_[edge].to; });
        arriving_.assign(joints, 0);
        std::vector<std::size_t> endingFrom(joints + 1, 0);
        for (const uint32_t edge : ending) ++arriving_[links_[edge].to];
        for (std::size_t joint = 0; joint < joints; ++joint) {
            endingFrom[joint + 1] = endingFrom[joint] + arriving_[joint];
        }

        std::vector<uint32_t> loose;
        const auto drop = [&](uint32_t edge) {
            if (!links_[edge].gone) loose.push_back(edge);
            use(edge);
        };
        for (uint32_t edge = 0; edge < links_.size(); ++edge) {
            if (links_[edge].to == kNone || arriving_[links_[edge].from] == 0) drop(edge);
        }
        while (!loose.empty()) {
            const uint32_t edge = loose.back();
            loose.pop_back();
            walks_.left.push_back(edge);
            const uint32_t from = links_[edge].from, to = links_[edge].to;
            if (--leaving[from] == 0) {
                for (std::size_t at = endingFrom[from]; at < endingFrom[from + 1]; ++at) {
                    drop(ending[at]);
                }
            }
            if (to != kNone && --arriving_[to] == 0) {
                for (uint32_t place = joints_[to]; place < joints_[to + 1]; ++place) {
                    drop(order_[place]);
                }
            }
        }
    }

    void use(uint32_t edge) {
        links_[edge].gone = true;
        skip_[placeOf_[edge]] = placeOf_[edge] + 1;
    }

    // The first edge of a joint's that is left, from a place on and before an end.
    uint32_t leftFrom(uint32_t place, uint32_t end) {
        while (place < end && skip_[place] != place) {
            if (skip_[place] < end) skip_[place] = skip_[skip_[place]];
            place = skip_[place];
        }
        return place < end ? order_[place] : kNone;
    }

    // The area lies to the right of an edge. Behind its end it goes round the joint, from the way
    // back counter-clockwise, to the next edge that leaves.
    uint32_t next(uint32_t edge) {
        const uint32_t joint = links_[edge].to;
        if (joint == kNone) return kNone;
        const auto begin = order_.begin() + joints_[joint],
                   end = order_.begin() + joints_[joint + 1];
        const auto found = std::partition_point(
            begin, end, [&](uint32_t other) { return links_[other].leaving <= links_[edge].back; });
        const auto place = static_cast<uint32_t>(found - order_.begin());
        const uint32_t ahead = leftFrom(place, joints_[joint + 1]);
        return ahead != kNone ? ahead : leftFrom(joints_[joint], place);
    }

    void walk(uint32_t edge) {
        do {
            use(edge);
            onWalk_[links_[edge].from] = static_cast<uint32_t>(walk_.size());
            walk_.push_back(edge);
            const uint32_t joint = links_[edge].to;
            if (onWalk_[joint] != kNone) {
                closeWalk(onWalk_[joint]);
                if (walk_.empty()) return;
            }
            edge = next(edge);
        } while (edge != kNone);
        walks_.left.insert(walks_.left.end(), walk_.begin(), walk_.end());
        takeOff(0);
    }

    void closeWalk(uint32_t from) {
        walks_.edges.insert(walks_.edges.end(), walk_.begin() + from, walk_.end());
        walks_.ends.push_back(walks_.edges.size());
        takeOff(from);
    }

    void takeOff(uint32_t from) {
        for (std::size_t at = from; at < walk_.size(); ++at) {
            onWalk_[links_[walk_[at]].from] = kNone;
        }
        walk_.resize(from);
    }

    const Edges& edges_;
    Walks& walks_;
    std::vector<Link> links_;
    // Edges by where they start, and there by their direction.
    std::vector<uint32_t> order_;
    std::vector<uint32_t> placeOf_;  // the way back from it
    std::vector<uint32_t> joints_;   // first place of each joint, and the end
    std::vector<uint32_t> skip_;     // by place: itself, or one further on if it is gone
    std::vector<uint32_t> arriving_;
    std::vector<uint32_t> onWalk_;  // by joint: where on the walk it is left
    std::vector<uint32_t> walk_;
};

// Most areas have few arcs that fit one way only. False, with nothing done, for others.
bool traceSimply(const Edges& edges, Walks& walks) {
    constexpr std::size_t kMost = 16;
    const std::size_t count = edges.edges.size();
    if (count > kMost) return false;
    std::array<Point, kMost> starts;
    for (std::size_t edge = 0; edge < count; ++edge) {
        starts[edge] = edges.start(edges.edges[edge]);
    }
    std::array<uint32_t, kMost> next{};
    std::array<bool, kMost> reached{};
    for (std::size_t edge = 0; edge < count; ++edge) {
        const Point end = edges.finish(edges.edges[edge]);
        std::size_t fitting = 0;
        for (uint32_t other = 0; other < count; ++other) {
            const bool fits = (starts[other].x == end.x) & (starts[other].y == end.y);
            next[edge] = fits ? other : next[edge];
            fitting += fits;
        }
        if (fitting != 1 || reached[next[edge]]) return false;
        reached[next[edge]] = true;
    }
    for (uint32_t first = 0; first < count; ++first) {
        if (!reached[first]) continue;
        for (uint32_t edge = first; reached[edge]; edge = next[edge]) {
            reached[edge] = false;
            walks.edges.push_back(edge);
        }
        walks.ends.push_back(walks.edges.size());
    }
    return true;
}

}  // namespace

void traceEdges(const Edges& edges, Walks& walks) {
    walks.edges.clear();
    walks.ends.clear();
    walks.left.clear();
    if (!traceSimply(edges, walks)) Tracer(edges, walks);
}

}  // namespace topology
