#include "app/intake/export/surface_parts.h"

#include <algorithm>
#include <limits>

#include "app/intake/interrupts.h"

namespace program {

namespace {

void lookAt(int64_t number) {
    constexpr int64_t kBetweenLooks = 65536;
    if (number % kBetweenLooks == 0) throwIfInterrupted();
}

}  // namespace

std::vector<Spot> readNodes(const std::string& path) {
    std::vector<Spot> spots;
    for (const datasets::Node& node : datasets::nodes(path)) {
        if (!node.place) break;
        lookAt(node.number);
        spots.push_back(
            {node.place->x, node.place->y,
             node.hasHeight() ? double{*node.height} : std::numeric_limits<double>::quiet_NaN()});
    }
    return spots;
}

bool isClockwise(const Spot& a, const Spot& b, const Spot& c) {
    return (b[0] - a[0]) * (c[1] - a[1]) < (c[0] - a[0]) * (b[1] - a[1]);
}

datasets::Box boxOf(std::span<const Spot> spots) {
    constexpr double kFar = std::numeric_limits<double>::infinity();
    datasets::Box box = {kFar, kFar, -kFar, -kFar};
    for (const Spot& spot : spots) {
        box = {std::min(box[0], spot[0]), std::min(box[1], spot[1]), std::max(box[2], spot[0]),
               std::max(box[3], spot[1])};
    }
    return box;
}

Mask::Mask(const std::string& path) : words_(datasets::mask(path)) {
    for (const uint32_t word : datasets::mask(path)) hides_ = hides_ || word != 0;
}

bool Mask::shows() {
    if (!hides_) return true;
    if (bit_ < 0) {
        bit_ = 31;
        there_ = there_ && words_.next();
    }
    const int at = bit_--;
    return there_ && (words_.current() >> at & 1U) != 0;
}

std::vector<std::pair<int32_t, int32_t>> breakLinesOf(const std::string& path) {
    using Side = std::pair<int32_t, int32_t>;
    // The side of a place lies between the corner of that place and the next.
    const auto sideOf = [](const datasets::Triple& nodes, std::size_t place) {
        const auto [low, high] = std::minmax(nodes[place], nodes[(place + 1) % 3]);
        return Side(low, high);
    };
    std::vector<Side> marked;
    for (const datasets::Triangle& triangle : datasets::triangles(path)) {
        if (!triangle.nodes || !triangle.edges) break;
        lookAt(triangle.number);
        for (std::size_t place = 0; place < 3; ++place) {
            if ((*triangle.edges)[place] < 0) marked.push_back(sideOf(*triangle.nodes, place));
        }
    }
    std::sort(marked.begin(), marked.end());
    marked.erase(std::unique(marked.begin(), marked.end()), marked.end());

    std::vector<uint8_t> meeting(marked.size());  // triangles at each, up to two
    for (const datasets::Triangle& triangle : datasets::triangles(path)) {
        if (!triangle.nodes) break;
        lookAt(triangle.number);
        for (std::size_t place = 0; place < 3; ++place) {
            const Side side = sideOf(*triangle.nodes, place);
            const auto found = std::lower_bound(marked.begin(), marked.end(), side);
            if (found == marked.end() || *found != side) continue;
            uint8_t& count = meeting[static_cast<std::size_t>(found - marked.begin())];
            if (count < 2) ++count;
        }
    }
    std::size_t kept = 0;
    for (std::size_t each = 0; each < marked.size(); ++each) {
        if (meeting[each] == 2) marked[kept++] = marked[each];
    }
    marked.resize(kept);
    return marked;
}

}  // namespace program
