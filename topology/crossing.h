// Whether a line crosses itself.
#ifndef TOPOLOGY_CROSSING_H
#define TOPOLOGY_CROSSING_H

#include <span>

#include "topology/arc_source.h"

namespace topology {

// Looks for two edges that cross; edges that only touch do not. Lines as maps have them are looked
// through wholly, in a time that goes with their length. One that folds over itself so often that
// this would take much longer counts as not crossing.
bool crossesItself(std::span<const Point> line);

}  // namespace topology

#endif
