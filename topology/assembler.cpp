#include "topology/assembler.h"

#include <algorithm>

#include "topology/crossing.h"
#include "topology/edges.h"
#include "topology/nesting.h"
#include "topology/ring.h"
#include "topology/tracing.h"

namespace topology {

struct Assembler::Work {
    explicit Work(ArcSource& source) : arcs(source) {}

    void makeRings();
    double appendTurned(std::span<const uint32_t> walk);
    void keepRing(Reason reason, std::span<const Point> ring);
    void setRoles(bool mayBeTurned);
    void give();

    std::span<const Point> vertices(const Ring& ring) const {
        return std::span(pool).subspan(ring.begin, ring.end - ring.begin);
    }

    ArcSource& arcs;
    Edges edges;
    Walks walks;
    CrossingSearch crossing;
    // Vertices of the rings, from each walk's end to its start: then an outer ring, with the area
    // to the right of its arcs, goes counter-clockwise.
    std::vector<Point> pool;
    std::vector<Point> joints;  // of one ring
    std::vector<Ring> rings;
    std::vector<uint32_t> outerOf;  // by ring: its outer ring, itself, or none if it is left out
    bool outerIsPositive = true;
    Shape shape;
};

// Gives the area of the ring: of what lies between its joints, and between each arc and the
// straight way from joint to joint.
double Assembler::Work::appendTurned(std::span<const uint32_t> walk) {
    Runs& runs = crossing.runs;
    const std::size_t begin = pool.size();
    double area = 0;
    runs.startLine();
    joints.clear();
    for (std::size_t at = walk.size(); at-- > 0;) {
        const Edge& edge = edges.edges[walk[at]];
        edges.appendTurned(edge, at + 1 == walk.size(), pool);
        runs.addPart(edges.runsOf(edge), !edge.backwards);
        joints.push_back(pool.back());
        area += edge.backwards ? edge.area : -edge.area;
    }
    runs.finishLine(std::span(pool).subspan(begin));
    return area + areaOf(joints);
}

// As a line in the direction of its arcs.
void Assembler::Work::keepRing(Reason reason, std::span<const Point> ring) {
    shape.problems.push_back({reason, 0, shape.lines(), 1});
    shape.linePoints().insert(shape.linePoints().end(), ring.rbegin(), ring.rend());
    shape.endLine();
}

void Assembler::Work::makeRings() {
    pool.clear();
    rings.clear();
    std::size_t first = 0;
    for (const std::size_t end : walks.ends) {
        const std::size_t begin = pool.size();
        const double area = appendTurned(std::span(walks.edges).subspan(first, end - first));
        first = end;
        const std::span<const Point> points = std::span(pool).subspan(begin);
        if (area == 0 || crossing.linesCross()) {
            keepRing(area == 0 ? Reason::NoArea : Reason::CrossesItself, points);
            pool.resize(begin);
            continue;
        }
        rings.push_back({begin, pool.size(), area});
    }
    if (walks.left.empty()) return;
    shape.problems.push_back({Reason::Unclosed,
                              walks.left.size() == 1 ? edges.edges[walks.left[0]].arc : 0,
                              shape.lines(), walks.left.size()});
    for (const uint32_t edge : walks.left) {
        edges.append(edges.edges[edge], shape.linePoints());
        shape.endLine();
    }
}

// Which rings are outer ones, and to which each hole belongs.
void Assembler::Work::setRoles(bool mayBeTurned) {
    double area = 0;
    for (const Ring& ring : rings) area += ring.area;
    // Outer rings are those that are counter-clockwise here, unless the whole list goes the other
    // way.
    outerIsPositive = !(mayBeTurned && area < 0);

    outerOf.assign(rings.size(), kNoRing);
    if (rings.size() == 1) {
        if ((rings[0].area > 0) == outerIsPositive) outerOf[0] = 0;
        return;
    }
    for (Ring& ring : rings) ring.box = boxOf(vertices(ring));
    const std::vector<uint32_t> parents = nest(rings, pool, outerIsPositive);
    for (const uint32_t ring : byArea(rings)) {
        const uint32_t parent = parents[ring];
        const bool outer = (rings[ring].area > 0) == outerIsPositive;
        if (parent == kNoRing) {
            if (outer) outerOf[ring] = ring;
        } else if (outerOf[parent] != kNoRing) {
            const bool inOuter = outerOf[parent] == parent;
            if (outer != inOuter) outerOf[ring] = outer ? ring : parent;
        }
    }
}

void Assembler::Work::give() {
    if (rings.size() == 1 && outerOf[0] == 0) {
        if (!outerIsPositive) std::ranges::reverse(pool);
        shape.points().swap(pool);
        shape.endRing();
        shape.ringCounts.push_back(1);
        return;
    }
    // Holes by their outer ring, in the order in which they were found.
    std::vector<uint32_t> order;
    for (uint32_t ring = 0; ring < rings.size(); ++ring) {
        if (outerOf[ring] != kNoRing) order.push_back(ring);
    }
    std::ranges::stable_sort(
        order, {}, [&](uint32_t ring) { return std::pair(outerOf[ring], outerOf[ring] != ring); });
    for (const uint32_t ring : order) {
        const std::span<const Point> own = vertices(rings[ring]);
        std::vector<Point>& points = shape.points();
        if (outerIsPositive) {
            points.insert(points.end(), own.begin(), own.end());
        } else {
            points.insert(points.end(), own.rbegin(), own.rend());
        }
        shape.endRing();
        if (outerOf[ring] == ring) shape.ringCounts.push_back(0);
        ++shape.ringCounts.back();
    }
    for (uint32_t ring = 0; ring < rings.size(); ++ring) {
        if (outerOf[ring] != kNoRing) continue;
        keepRing(Reason::Misplaced, vertices(rings[ring]));
    }
}

Assembler::Assembler(ArcSource& arcs) : work_(std::make_unique<Work>(arcs)) {}

Assembler::~Assembler() = default;

const Shape& Assembler::assemble(std::span<const int32_t> list) {
    Work& work = *work_;
    work.shape.clear();
    readEdges(list, work.arcs, work.edges, work.shape);
    traceEdges(work.edges, work.walks);
    work.makeRings();
    // Where something is missing, that may be an outer ring, and a hole alone is no area.
    const bool whole = std::ranges::all_of(work.shape.problems, [](const Shape::Problem& problem) {
        return problem.reason == Reason::RepeatedArc;
    });
    work.setRoles(whole);
    work.give();
    return work.shape;
}

}  // namespace topology
