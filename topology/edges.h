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

struct Edges {
    std::vector<Edge> edges;
    std::vector<Point> pool;
    std::vector<int32_t> list;  // numbers, sorted

    Point start(const Edge& edge) const { return pool[edge.backwards ? edge.end - 1 : edge.begin]; }
    Point finish(const Edge& edge) const {
        return pool[edge.backwards ? edge.begin : edge.end - 1];
    }
    // Appends the vertices in the edge's direction, with or without the last one.
    void append(const Edge& edge, bool whole, std::vector<Point>& points) const;
};

// Reads the arcs of a list as Assembler describes it: each once, those that are named in both
// directions not at all. What is wrong with it goes to the shape.
void readEdges(std::span<const int32_t> list, ArcSource& arcs, Edges& edges, Shape& shape);

}  // namespace topology

#endif
