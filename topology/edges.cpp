#include "topology/edges.h"

#include <algorithm>
#include <bit>

namespace topology {

namespace {

// Beyond it an area is no finite number any more; no map is that large.
constexpr double kGreatest = 1e100;

// How many vertices are kept for lists that follow: four megabytes of them.
constexpr std::size_t kKept = 256 * 1024;

// Without their signs, reals that are no number or too great are greater as integers, too; what is
// left of the limit is then below zero.
bool usable(std::span<const double> pairs) {
    if (pairs.size() < 4) return false;
    constexpr auto kLimit = std::bit_cast<uint64_t>(kGreatest);
    constexpr uint64_t kSign = uint64_t{1} << 63;
    uint64_t bad = 0;
    for (const double real : pairs) bad |= kLimit - (std::bit_cast<uint64_t>(real) & ~kSign);
    return (bad & kSign) == 0;
}

// The least integer has no counterpart, so numbers are compared without their sign as unsigned.
uint32_t magnitude(int32_t arc) {
    return arc < 0 ? 0U - static_cast<uint32_t>(arc) : static_cast<uint32_t>(arc);
}

bool before(int32_t first, int32_t second) {
    return magnitude(first) != magnitude(second) ? magnitude(first) < magnitude(second)
                                                 : first < second;
}

}  // namespace

void Edges::append(const Edge& edge, std::vector<Point>& points) const {
    append(edge.begin, edge.end, edge.backwards, points);
}

void Edges::appendTurned(const Edge& edge, bool whole, std::vector<Point>& points) const {
    const std::size_t skipped = whole ? 0 : 1;
    if (edge.backwards) {
        append(edge.begin + skipped, edge.end, false, points);
    } else {
        append(edge.begin, edge.end - skipped, true, points);
    }
}

void Edges::append(std::size_t begin, std::size_t end, bool backwards,
                   std::vector<Point>& points) const {
    const std::span<const Point> part = std::span(pool).subspan(begin, end - begin);
    if (backwards) {
        points.insert(points.end(), part.rbegin(), part.rend());
    } else {
        points.insert(points.end(), part.begin(), part.end());
    }
}

void readEdges(std::span<const int32_t> list, ArcSource& arcs, Edges& edges, Shape& shape) {
    edges.edges.clear();
    if (edges.pool.size() > kKept) {
        edges.pool.clear();
        edges.runs.clear();
        edges.recent.clear();
    }
    std::vector<int32_t>& sorted = edges.list;
    sorted.assign(list.begin(), list.end());
    std::erase(sorted, 0);
    std::ranges::sort(sorted, before);

    for (std::size_t index = 0; index < sorted.size();) {
        const int32_t arc = sorted[index];
        const std::size_t first = index;
        while (index < sorted.size() && magnitude(sorted[index]) == magnitude(arc)) ++index;
        // Backwards comes first, so a pair of both begins and ends with different ones.
        if (sorted[index - 1] != arc) continue;

        const auto number = static_cast<int32_t>(magnitude(arc));
        const bool repeated = index - first > 1;
        if (const Place* known = edges.recent.find(number)) {
            if (repeated) shape.problems.push_back({Reason::RepeatedArc, number, 0, 0});
            edges.edges.push_back({*known, number, arc < 0});
            continue;
        }
        std::span<const double> pairs;
        if (number < 0 || !arcs.vertices(number, pairs)) {
            shape.problems.push_back({Reason::MissingArc, number, 0, 0});
            continue;
        }
        if (!usable(pairs)) {
            shape.problems.push_back({Reason::BadCoordinates, number, 0, 0});
            continue;
        }
        const std::span<const Point> vertices = pointsOf(pairs);
        Place place{edges.pool.size(), 0, edges.runs.size(), 0, areaOf(vertices)};
        edges.pool.insert(edges.pool.end(), vertices.begin(), vertices.end());
        cutIntoRuns(vertices, edges.runs);
        place.end = edges.pool.size();
        place.endOfRuns = edges.runs.size();
        if (place.end <= kKept) edges.recent.keep(number, place);
        if (repeated) shape.problems.push_back({Reason::RepeatedArc, number, 0, 0});
        edges.edges.push_back({place, number, arc < 0});
    }
}

}  // namespace topology
