// Whether a line crosses itself.
#ifndef TOPOLOGY_CROSSING_H
#define TOPOLOGY_CROSSING_H

#include <span>
#include <vector>

#include "topology/runs.h"

namespace topology {

class CrossingSearch {
  public:
    // Looks for two edges that cross; edges that only touch do not. Lines as maps have them are
    // looked through wholly, in a time that goes with their length. One that folds over itself so
    // often that this would take much longer counts as not crossing.
    bool crossesItself(std::span<const Point> line) {
        runs.over(line);
        return linesCross();
    }
    // The same of the line that its runs are of.
    bool linesCross();

    Runs runs;

  private:
    struct Pair {
        std::size_t level, first, second;
    };
    bool fewCross() const;
    bool between(std::size_t first, std::size_t second) const;

    std::vector<Pair> open_;  // what is still to be compared
};

}  // namespace topology

#endif
