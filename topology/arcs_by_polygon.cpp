#include "topology/arcs_by_polygon.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace topology {

void ArcsByPolygon::add(int32_t arc, int32_t left, int32_t right) {
    if (arc < 1 || left == right) return;
    if (right >= 1) sides_.push_back({right, arc});
    if (left >= 1) sides_.push_back({left, -arc});
}

// By digits of the number, the lowest first; sides of one polygon stay in their order.
void ArcsByPolygon::sortByPolygon() {
    constexpr int kDigitBits = 11;
    constexpr std::size_t kDigits = 1 << kDigitBits;
    std::vector<Side> sorted(sides_.size());
    for (int shift = 0; shift < 31; shift += kDigitBits) {
        const auto digit = [shift](const Side& side) {
            return static_cast<std::size_t>(side.polygon >> shift) % kDigits;
        };
        std::array<std::size_t, kDigits + 1> places{};
        for (const Side& side : sides_) ++places[digit(side) + 1];
        if (std::ranges::find(places, sides_.size()) != places.end()) continue;  // all the same
        std::partial_sum(places.begin(), places.end(), places.begin());
        for (const Side& side : sides_) sorted[places[digit(side)]++] = side;
        sides_.swap(sorted);
    }
}

void ArcsByPolygon::finish() {
    sortByPolygon();
    arcs_.reserve(sides_.size());
    polygons_.reserve(sides_.size() / 2);
    ends_.reserve(sides_.size() / 2);
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
