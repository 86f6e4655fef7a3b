#include "topology/shape.h"

#include <array>

namespace topology {

namespace {

constexpr std::array<std::string_view, 7> kWords = {
    "names an arc that is not there",
    "names an arc more than once",
    "has an arc with coordinates that cannot be used",
    "does not close",
    "has a ring without an area",
    "has a ring that crosses itself",
    "has a ring that is outside where it belongs",
};

}  // namespace

std::string_view words(Reason reason) { return kWords[static_cast<std::size_t>(reason)]; }

void Shape::clear() {
    ringCounts.clear();
    problems.clear();
    points_.clear();
    ringEnds_.clear();
    linePoints_.clear();
    lineEnds_.clear();
}

}  // namespace topology
