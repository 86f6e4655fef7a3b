#include "topology/arcs_by_polygon.h"

#include <algorithm>
#include <cstdlib>

namespace topology {

void ArcsByPolygon::add(int32_t arc, int32_t left, int32_t right) {
    if (arc < 1 || left == right) return;
    if (right >= 1) sides_.push_back({right, arc});
    if (left >= 1) sides_.push_back({left, -arc});
}

void ArcsByPolygon::finish() {
    std::ranges::sort(sides_, [](const Side& first, const Side& second) {
        if (first.polygon != second.polygon) return first.polygon < second.polygon;
        return std::abs(first.arc) < std::abs(second.arc);
    });
    arcs_.reserve(sides_.size());
    for (const Side& side : sides_) {
        if (polygons_.empty() || polygons_.back() != side.polygon) {
            polygons_.push_back(side.polygon);
            ends_.push_back(arcs_.size());
        }
        arcs_.push_back(side.arc);
        ends_.back() = arcs_.size();
    }
    sides_ = {};
}

std::span<const int32_t> ArcsByPolygon::of(int32_t polygon) const {
    const auto found = std::ranges::lower_bound(polygons_, polygon);
    if (found == polygons_.end() || *found != polygon) return {};
    const auto index = static_cast<std::size_t>(found - polygons_.begin());
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return std::span(arcs_).subspan(begin, ends_[index] - begin);
}

}  // namespace topology
