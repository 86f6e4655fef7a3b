#include "topology/nesting.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>

#include "topology/inside.h"

namespace topology {

namespace {

// How many rings are looked at for one, on average, before it counts as lying in none.
constexpr std::size_t kPatience = 1000;

// Grids over one another, each with cells half as wide as the one above. A ring lies in the finest
// grid whose cells are not smaller than it, so it touches at most four of them, and a point has one
// cell in each grid.
class SizeGrids {
  public:
    SizeGrids(const Box& all, std::size_t rings) : all_(all), patience_(kPatience * rings) {
        width_ = std::max(all.greatest.x - all.least.x, all.greatest.y - all.least.y);
    }

    int levelOf(const Box& box) const {
        const double size = std::max(box.greatest.x - box.least.x, box.greatest.y - box.least.y);
        if (!(size > 0) || !(width_ > 0)) return kFinest;
        return std::clamp(static_cast<int>(std::floor(std::log2(width_ / size))), 0, kFinest);
    }
    // Ranks go up with the area.
    void add(const Box& box, uint32_t rank) {
        const int level = levelOf(box);
        const uint64_t left = step(box.least.x - all_.least.x, level);
        const uint64_t right = step(box.greatest.x - all_.least.x, level);
        const uint64_t bottom = step(box.least.y - all_.least.y, level);
        const uint64_t top = step(box.greatest.y - all_.least.y, level);
        for (uint64_t x = left; x <= right; ++x) {
            for (uint64_t y = bottom; y <= top; ++y) entries_.push_back({cell(level, x, y), rank});
        }
        used_ |= uint32_t{1} << level;
    }
    void finish() { std::ranges::sort(entries_); }

    // The first of the ranks above one and below a limit, in grids from the ring's own to coarser
    // ones and upwards in each cell, that pleases. Of rings that hold this one, each smaller one is
    // met before larger ones.
    template <class Pleases>
    uint32_t find(const Box& box, uint32_t rank, uint32_t limit, Pleases&& pleases) {
        for (int level = levelOf(box); level >= 0; --level) {
            if ((used_ >> level & 1) == 0) continue;
            const uint64_t key = cell(level, step(box.least.x - all_.least.x, level),
                                      step(box.least.y - all_.least.y, level));
            auto at = std::ranges::upper_bound(entries_, Entry{key, rank});
            for (; at != entries_.end() && at->cell == key && at->rank < limit; ++at) {
                if (patience_ == 0) return limit;
                --patience_;
                if (pleases(at->rank)) return at->rank;
            }
        }
        return limit;
    }

  private:
    static constexpr int kFinest = 28;

    struct Entry {
        uint64_t cell;
        uint32_t rank;
        friend auto operator<=>(const Entry&, const Entry&) = default;
    };

    uint64_t step(double distance, int level) const {
        if (!(width_ > 0)) return 0;
        return static_cast<uint64_t>(std::ldexp(distance / width_, level));
    }
    static uint64_t cell(int level, uint64_t x, uint64_t y) {
        return static_cast<uint64_t>(level) << 58 | x << 29 | y;
    }

    Box all_;
    double width_ = 0;
    uint32_t used_ = 0;
    std::size_t patience_;
    std::vector<Entry> entries_;
};

}  // namespace

std::vector<uint32_t> byArea(std::span<const Ring> rings) {
    std::vector<uint32_t> order(rings.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::stable_sort(order, std::greater{},
                             [&](uint32_t ring) { return std::fabs(rings[ring].area); });
    return order;
}

std::vector<uint32_t> nest(std::span<const Ring> rings, std::span<const Point> pool,
                           bool outerIsPositive) {
    std::vector<uint32_t> parents(rings.size(), kNoRing);
    if (rings.size() < 2) return parents;

    std::vector<Point> corners;
    corners.reserve(2 * rings.size());
    for (const Ring& ring : rings) {
        corners.push_back(ring.box.least);
        corners.push_back(ring.box.greatest);
    }
    // Apart for both kinds, so that an outer ring is found at once among holes without number.
    const Box all = boxOf(corners);
    std::array<SizeGrids, 2> grids{SizeGrids(all, rings.size()), SizeGrids(all, rings.size())};
    std::vector<uint32_t> order = byArea(rings);
    std::ranges::reverse(order);
    const auto count = static_cast<uint32_t>(order.size());
    for (uint32_t rank = 0; rank < count; ++rank) {
        const Ring& ring = rings[order[rank]];
        grids[(ring.area > 0) == outerIsPositive ? 0 : 1].add(ring.box, rank);
    }

    std::vector<std::optional<InsideTest>> tests(rings.size());
    for (SizeGrids& grid : grids) grid.finish();
    const auto vertices = [&](uint32_t ring) {
        return pool.subspan(rings[ring].begin, rings[ring].end - rings[ring].begin);
    };
    for (uint32_t rank = 0; rank < count; ++rank) {
        const uint32_t ring = order[rank];
        uint32_t found = count;
        for (const std::size_t kind : {0U, 1U}) {
            found = grids[kind].find(rings[ring].box, rank, found, [&](uint32_t other) {
                const uint32_t outer = order[other];
                if (!rings[outer].box.holds(rings[ring].box)) return false;
                if (!tests[outer]) tests[outer].emplace(vertices(outer));
                return tests[outer]->holds(vertices(ring));
            });
        }
        if (found != count) parents[ring] = order[found];
    }
    return parents;
}

}  // namespace topology
