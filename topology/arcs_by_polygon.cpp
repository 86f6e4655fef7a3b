#include "topology/arcs_by_polygon.h"

#include <algorithm>

namespace topology {

void ArcsByPolygon::add(int32_t arc, int32_t left, int32_t right) {
    if (arc < 1 || left == right) return;
    if (right >= 1) sides_.push_back({right, arc});
    if (left >= 1) sides_.push_back({left, -arc});
}

void ArcsByPolygon::finish() {
    const auto greatest = std::ranges::max_element(sides_, {}, &Side::polygon);
    const std::size_t most = sides_.empty() ? 0 : static_cast<std::size_t>(greatest->polygon);
    if (most <= 2 * sides_.size()) {
        placeByNumber(most);
    } else {
        placeSorted();
    }
    sides_ = {};
}

// How many arcs each number has tells where they go.
void ArcsByPolygon::placeByNumber(std::size_t most) {
    std::vector<std::size_t> places(most + 1);
    for (const Side& side : sides_) ++places[static_cast<std::size_t>(side.polygon)];
    polygons_.reserve(most);
    ends_.reserve(most);
    std::size_t end = 0;
    for (std::size_t polygon = 1; polygon <= most; ++polygon) {
        const std::size_t begin = end;
        end += places[polygon];
        places[polygon] = begin;
        if (end == begin) continue;
        polygons_.push_back(static_cast<int32_t>(polygon));
        ends_.push_back(end);
    }
    arcs_.resize(sides_.size());
    for (const Side& side : sides_) {
        arcs_[places[static_cast<std::size_t>(side.polygon)]++] = side.arc;
    }
}

// Of numbers that are far apart.
void ArcsByPolygon::placeSorted() {
    std::ranges::stable_sort(sides_, {}, &Side::polygon);
    arcs_.reserve(sides_.size());
    for (const Side& side : sides_) {
        if (polygons_.empty() || polygons_.back() != side.polygon) {
            polygons_.push_back(side.polygon);
            ends_.push_back(arcs_.size());
        }
        arcs_.push_back(side.arc);
        ends_.back() = arcs_.size();
    }
}

std::span<const int32_t> ArcsByPolygon::of(int32_t polygon) const {
    if (polygons_.empty() || polygon < polygons_.front()) return {};
    // Where all numbers are there, the place is the number.
    auto index = static_cast<std::size_t>(int64_t{polygon} - polygons_.front());
    if (index >= polygons_.size() || polygons_[index] != polygon) {
        const auto found = std::ranges::lower_bound(polygons_, polygon);
        if (found == polygons_.end() || *found != polygon) return {};
        index = static_cast<std::size_t>(found - polygons_.begin());
    }
    const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
    return std::span(arcs_).subspan(begin, ends_[index] - begin);
}

}  // namespace topology
