// The tree of an index: the extent, halved again and again across x and y in turn. Nodes are
// numbered like those of a heap, from 1, the upper half of node n 2n and the lower 2n + 1.
#ifndef COVERAGE_SPATIAL_INDEX_NODE_TREE_H
#define COVERAGE_SPATIAL_INDEX_NODE_TREE_H

#include <cstdint>
#include <vector>

#include "coverage/spatial_index/grid.h"

namespace intake {

inline constexpr int32_t kBlockEntries = 100;

// Levels of the tree for a number of records: 10 to 17. Nodes have numbers below 2 to this power.
int32_t treeDepth(int32_t recordCount);

// The smallest node that holds a box whole.
int32_t nodeOf(const GridBox& box, int32_t depth);

// Entries of each node, by its number; -1 for an empty node whose subtree stays as it is.
using NodeCounts = std::vector<int32_t>;

// Folds sparse subtrees into their parents.
void SPXMRG(NodeCounts& counts, int32_t depth);

// What the file holds of a node: where its entries begin, and how many there are. Zeros for an
// empty node.
struct NodeEntry {
    int32_t firstBlock = 0;
    int32_t entryCount = 0;
};

// The nodes from 1 to the highest occupied one, with their counts.
std::vector<NodeEntry> occupiedNodes(const NodeCounts& counts);

// Gives each node its blocks. The counts become first blocks; a node that was folded away or is
// empty gets the block of the last occupied node before it.
void SPXORD(NodeCounts& counts, int32_t depth, std::vector<NodeEntry>& nodes);

}  // namespace intake

#endif
