// What the exports of a triangulated surface share: its nodes, which triangles its mask shows, and
// the rings of its hull.
#ifndef APP_INTAKE_EXPORT_SURFACE_PARTS_H
#define APP_INTAKE_EXPORT_SURFACE_PARTS_H

#include <array>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "datasets/point.h"
#include "datasets/surfaces.h"

namespace program {

using Spot = std::array<double, 3>;

// Nodes by number; one without a height has NaN.
std::vector<Spot> readNodes(const std::string& path);

inline bool isNode(int32_t number, const std::vector<Spot>& spots) {
    return number >= 1 && static_cast<std::size_t>(number) <= spots.size();
}
inline const Spot& spotOf(int32_t number, const std::vector<Spot>& spots) {
    return spots[static_cast<std::size_t>(number) - 1];
}

// Whether three places go clockwise as seen from above.
bool isClockwise(const Spot& a, const Spot& b, const Spot& c);

// The rectangle around places, as x and y have it.
datasets::Box boxOf(std::span<const Spot> spots);

// A bit a triangle: one that is set shows it. What lies behind the last bit that is set is not
// kept, and so is 0; but a mask without any set bit hides nothing.
class Mask {
  public:
    explicit Mask(const std::string& path);
    // Asked in order.
    bool shows();

  private:
    datasets::Range<datasets::SingleCursor<uint32_t>> words_;
    bool hides_ = false;
    bool there_ = true;
    int bit_ = -1;
};

// The hull's numbers name nodes around the surface; one that names none parts two rings. Calls
// take(numbers) for each ring, whose last is not its first once more; a single node is one too.
template <class Take>
void eachHullRing(const std::string& path, const std::vector<Spot>& spots, Take take) {
    std::vector<int32_t> ring;
    const auto finish = [&] {
        if (!ring.empty()) take(ring);
        ring.clear();
    };
    for (const int32_t number : datasets::hull(path)) {
        if (isNode(number, spots)) {
            ring.push_back(number);
        } else {
            finish();
        }
    }
    finish();
}

// The nodes at the ends of break lines: sides where triangles meet though one of them bears a mark
// there (a negative number) and not the number of the other. Ascending, each once.
std::vector<std::pair<int32_t, int32_t>> breakLinesOf(const std::string& path);

}  // namespace program

#endif
