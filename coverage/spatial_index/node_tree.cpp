#include "coverage/spatial_index/node_tree.h"

#include <algorithm>

namespace intake {

namespace {

constexpr int32_t kDeepest = 17;
constexpr int32_t kShallowest = 10;
constexpr int32_t kMostInOneNode = 8;
constexpr int32_t kStays = -1;

std::size_t tableSize(int32_t depth) { return std::size_t{1} << depth; }

// Blocks are numbered from 2, behind the node table.
struct BlockOrder {
    NodeCounts& counts;
    std::vector<NodeEntry>& nodes;
    std::size_t firstLeaf;
    int32_t block = 1;

    // No deeper than the tree: 17 calls.
    void visit(std::size_t node) {
        const int32_t count = counts[node];
        if (count > 0) ++block;
        counts[node] = block;
        if (count > 0) {
            nodes[node - 1].firstBlock = block;
            block += (count - 1) / kBlockEntries;
        }
        if (node >= firstLeaf) return;
        visit(2 * node);
        visit(2 * node + 1);
    }
};

}  // namespace

int32_t treeDepth(int32_t recordCount) {
    int32_t depth = kDeepest;
    int32_t limit = 524288;
    while (depth > kShallowest && recordCount <= limit) {
        limit /= 2;
        --depth;
    }
    return depth;
}

int32_t nodeOf(const GridBox& box, int32_t depth) {
    struct Axis {
        int32_t low;
        int32_t high;
        int32_t from = 0;
        int32_t to = Grid::kCells;
    };
    Axis axes[] = {{box.xMin, box.xMax}, {box.yMin, box.yMax}};
    int32_t node = 1;
    for (int32_t step = 0; step < depth - 1; ++step) {
        Axis& axis = axes[step % 2];
        const int32_t middle = (axis.from + axis.to) / 2;
        if (axis.low > middle) {
            node = 2 * node;
            axis.from = middle;
        } else if (axis.high > middle) {
            break;
        } else {
            node = 2 * node + 1;
            axis.to = middle;
        }
    }
    return node;
}

void SPXMRG(NodeCounts& counts, int32_t depth) {
    // Node 1 takes nothing in. Stays.
    for (int32_t level = depth - 2; level >= 1; --level) {
        for (std::size_t node = tableSize(level); node < tableSize(level + 1); ++node) {
            int32_t& first = counts[2 * node];
            int32_t& second = counts[2 * node + 1];
            const int32_t below = std::max(first, 0) + std::max(second, 0);
            bool deeper = false;  // a node that is marked counts as one that is not empty
            for (std::size_t child = 4 * node; child < 4 * node + 4; ++child) {
                deeper |= child < counts.size() && counts[child] != 0;
            }
            int32_t& own = counts[node];
            if (own == 0) {
                if (first == kStays || second == kStays || below > kMostInOneNode || deeper) {
                    own = kStays;
                    continue;
                }
                if (below == 0) continue;
            } else if (own >= kMostInOneNode) {
                continue;
            }
            if (own + below <= kMostInOneNode && !deeper) {
                own += below;
                first = second = 0;
            }
        }
    }
}

std::vector<NodeEntry> occupiedNodes(const NodeCounts& counts) {
    std::size_t highest = counts.size() - 1;
    while (highest > 0 && counts[highest] <= 0) --highest;
    std::vector<NodeEntry> nodes(highest);
    for (std::size_t node = 1; node <= highest; ++node) {
        nodes[node - 1].entryCount = std::max(counts[node], 0);
    }
    return nodes;
}

void SPXORD(NodeCounts& counts, int32_t depth, std::vector<NodeEntry>& nodes) {
    BlockOrder{counts, nodes, tableSize(depth - 1)}.visit(1);
}

}  // namespace intake
