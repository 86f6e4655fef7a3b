// The arcs of one area, each in the direction in which the area lies to its right.
#ifndef TOPOLOGY_EDGES_H
#define TOPOLOGY_EDGES_H

#include <cstdint>
#include <span>
#include <vector>

#include "topology/arc_source.h"
#include "topology/shape.h"

namespace topology {

// An arc whose vertices lie one behind the other in a pool of points.
struct Edge {
    int32_t arc = 0;
    bool backwards = false;
    std::size_t begin = 0;
    std::size_t end = 0;
};

// Where in a pool the vertices of arcs lie that were read lately: most arcs are around two areas
// that follow each other closely.
class RecentArcs {
  public:
    struct Place {
        int32_t arc = 0;
        uint32_t begin = 0;
        uint32_t end = 0;
    };
    void clear() { places_.clear(); }
    // Null if the arc is not known any more.
    const Place* find(int32_t arc) const {
        if (places_.empty()) return nullptr;
        const Place& place = places_[slot(arc)];
        return place.arc == arc ? &place : nullptr;
    }
    // Another arc may be forgotten for it.
    void keep(const Place& place) {
        if (places_.empty()) places_.resize(kPlaces);
        places_[slot(place.arc)] = place;
    }

  private:
    static constexpr std::size_t kPlaces = 16384;
    static std::size_t slot(int32_t arc) { return static_cast<std::size_t>(arc) % kPlaces; }

    std::vector<Place> places_;
};

struct Edges {
    std::vector<Edge> edges;
    std::vector<Point> pool;  // also of arcs of lists before
    RecentArcs recent;
    std::vector<int32_t> list;  // numbers, sorted

    Point start(const Edge& edge) const { return pool[edge.backwards ? edge.end - 1 : edge.begin]; }
    Point finish(const Edge& edge) const {
        return pool[edge.backwards ? edge.begin : edge.end - 1];
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
