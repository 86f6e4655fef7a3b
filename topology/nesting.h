// Which ring lies directly inside which.
#ifndef TOPOLOGY_NESTING_H
#define TOPOLOGY_NESTING_H

#include <cstdint>
#include <span>
#include <vector>

#include "topology/ring.h"

namespace topology {

inline constexpr uint32_t kNoRing = ~uint32_t{0};

// For each ring the smallest one that it lies inside, kNoRing for none. The rings may touch each
// other and do not cross. Their vertices lie in the pool. Outer rings are those with a positive
// area, or those with a negative one. Rings that were put so that each would have to be compared
// with thousands of others are not compared with all of them.
std::vector<uint32_t> nest(std::span<const Ring> rings, std::span<const Point> pool,
                           bool outerIsPositive);

// Their indexes, larger rings first.
std::vector<uint32_t> byArea(std::span<const Ring> rings);

}  // namespace topology

#endif
