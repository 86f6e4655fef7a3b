// The arcs of one area, each in the direction in which the area lies to its right.
#ifndef TOPOLOGY_EDGES_H
#define TOPOLOGY_EDGES_H

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "topology/arc_source.h"
#include "topology/runs.h"
#include "topology/shape.h"

namespace topology {

// Where in pools the vertices of an arc lie one behind the other, and its runs; and the area
// between it and the straight way back.
struct Place {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t firstRun = 0;
    std::size_t endOfRuns = 0;
    double area = 0;
};

struct Edge : Place {
    int32_t arc = 0;
    bool backwards = false;
};

// Where the arcs lie that were read lately: most are around two areas that follow each other
// closely.
class RecentArcs {
  public:
    void clear() { places_.clear(); }
    // Null if the arc is not known any more.
    const Place* find(int32_t arc) const {
        if (places_.empty()) return nullptr;
        const auto& [number, place] = places_[slot(arc)];
        return number == arc ? &place : nullptr;
    }
    // Another arc may be forgotten for it.
    void keep(int32_t arc, const Place& place) {
        if (places_.empty()) places_.resize(kPlaces);
        places_[slot(arc)] = {arc, place};
    }

  private:
    static constexpr std::size_t kPlaces = 16384;
    static std::size_t slot(int32_t arc) { return static_cast<std::size_t>(arc) % kPlaces; }

    std::vector<std::pair<int32_t, Place>> places_;
};

struct Edges {
    std::vector<Edge> edges;
    std::vector<Point> pool;  // also of arcs of lists before, as the runs
    std::vector<Run> runs;
    RecentArcs recent;
    std::vector<int32_t> list;  // numbers, sorted

    Point start(const Edge& edge) const { return pool[edge.backwards ? edge.end - 1 : edge.begin]; }
    Point finish(const Edge& edge) const {
        return pool[edge.backwards ? edge.begin : edge.end - 1];
    }
    std::span<const Run> runsOf(const Edge& edge) const {
        return std::span(runs).subspan(edge.firstRun, edge.endOfRuns - edge.firstRun);
    }
    // Appends the vertices in the edge's direction.
    void append(const Edge& edge, std::vector<Point>& points) const;
    // ... against it, with or without the one that would then be the first.
    void appendTurned(const Edge& edge, bool whole, std::vector<Point>& points) const;

  private:
    void append(std::size_t begin, std::size_t end, bool backwards,
                std::vector<Point>& points) const;
};

// Reads the arcs of a list as Assembler describes it: each once, those that are named in both
// directions not at all. What is wrong with it goes to the shape.
void readEdges(std::span<const int32_t> list, ArcSource& arcs, Edges& edges, Shape& shape);

}  // namespace topology

#endif
