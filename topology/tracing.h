// Puts edges together to closed walks that pass each joint once.
#ifndef TOPOLOGY_TRACING_H
#define TOPOLOGY_TRACING_H

#include <cstdint>
#include <vector>

#include "topology/edges.h"

namespace topology {

struct Walks {
    // Indexes of edges, one closed walk behind the other, and where each ends.
    std::vector<uint32_t> edges;
    std::vector<std::size_t> ends;
    // Edges that are part of none, ascending.
    std::vector<uint32_t> left;
};

void traceEdges(const Edges& edges, Walks& walks);

}  // namespace topology

#endif
