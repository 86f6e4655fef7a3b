#include "formats/geojson/half_plane.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace formats::geojson {

namespace {

// A stretch of a ring on the side that is kept, from where it comes in to where it leaves.
using Chain = Path;

class Cut {
  public:
    Cut(double meridian, bool west) : meridian_(meridian), west_(west) {}

    std::vector<Polygon> of(const Polygon& polygon);

  private:
    bool kept(const Vertex& vertex) const {
        return west_ ? vertex.x <= meridian_ : vertex.x >= meridian_;
    }
    Vertex crossing(const Vertex& from, const Vertex& to) const {
        const double part = (meridian_ - from.x) / (to.x - from.x);
        return {meridian_, from.y + part * (to.y - from.y), from.z + part * (to.z - from.z)};
    }
    void takeRing(const Path& ring, bool outer);
    void joinChains();

    double meridian_;
    bool west_;
    std::vector<Chain> chains_;
    std::vector<Polygon> parts_;
    std::vector<Path> holes_;
};

void append(Path& path, const Vertex& vertex) {
    if (path.empty() || path.back() != vertex) path.push_back(vertex);
}

// By the number of sides that a line to the east crosses.
bool holds(const Path& ring, const Vertex& place) {
    bool inside = false;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        const Vertex& from = ring[i - 1];
        const Vertex& to = ring[i];
        if ((from.y > place.y) == (to.y > place.y)) continue;
        const double x = from.x + (place.y - from.y) / (to.y - from.y) * (to.x - from.x);
        if (x > place.x) inside = !inside;
    }
    return inside;
}

void Cut::takeRing(const Path& ring, bool outer) {
    // Begins where the ring comes in, if it ever does.
    std::size_t start = 1;
    while (start < ring.size() && (kept(ring[start - 1]) || !kept(ring[start]))) ++start;
    if (start >= ring.size()) {
        if (ring.empty() || !kept(ring.front())) return;
        if (outer) {
            parts_.push_back({ring});
        } else {
            holes_.push_back(ring);
        }
        return;
    }
    const std::size_t sides = ring.size() - 1;
    for (std::size_t i = 0; i < sides; ++i) {
        const std::size_t side = (start - 1 + i) % sides;
        const Vertex& from = ring[side];
        const Vertex& to = ring[side + 1];
        if (!kept(from) && kept(to)) {
            chains_.push_back({crossing(from, to)});
            append(chains_.back(), to);
        } else if (kept(from)) {
            append(chains_.back(), kept(to) ? to : crossing(from, to));
        }
    }
}

// Chains are joined along the meridian with what is kept on the left: northwards at an eastern edge
// and southwards at a western one. Along that way the first chain to leave goes on in the first to
// come in, the second in the second.
void Cut::joinChains() {
    const double way = west_ ? 1 : -1;
    std::vector<std::size_t> leaving(chains_.size());
    for (std::size_t i = 0; i < leaving.size(); ++i) leaving[i] = i;
    std::vector<std::size_t> coming = leaving;
    std::ranges::sort(leaving, {}, [&](std::size_t i) { return way * chains_[i].back().y; });
    std::ranges::sort(coming, {}, [&](std::size_t i) { return way * chains_[i].front().y; });
    std::vector<std::size_t> next(chains_.size());
    for (std::size_t i = 0; i < leaving.size(); ++i) next[leaving[i]] = coming[i];

    std::vector<bool> used(chains_.size());
    for (std::size_t first = 0; first < chains_.size(); ++first) {
        Path ring;
        for (std::size_t i = first; !used[i]; i = next[i]) {
            used[i] = true;
            for (const Vertex& vertex : chains_[i]) append(ring, vertex);
        }
        if (ring.empty()) continue;
        append(ring, Vertex(ring.front()));
        // What only touches the meridian has no area.
        if (ring.size() > 3) parts_.push_back({std::move(ring)});
    }
}

std::vector<Polygon> Cut::of(const Polygon& polygon) {
    for (std::size_t i = 0; i < polygon.size(); ++i) takeRing(polygon[i], i == 0);
    joinChains();
    for (Path& hole : holes_) {
        const auto around = std::ranges::find_if(
            parts_, [&](const Polygon& part) { return holds(part.front(), hole.front()); });
        // One that touches its outer ring where it begins may be held by none.
        if (around != parts_.end()) {
            around->push_back(std::move(hole));
        } else if (!parts_.empty()) {
            parts_.front().push_back(std::move(hole));
        }
    }
    return std::move(parts_);
}

std::vector<Polygon> cutAll(double meridian, bool west, const std::vector<Polygon>& polygons) {
    std::vector<Polygon> result;
    for (const Polygon& polygon : polygons) {
        std::vector<Polygon> parts = Cut(meridian, west).of(polygon);
        std::ranges::move(parts, std::back_inserter(result));
    }
    return result;
}

}  // namespace

std::vector<Polygon> westOf(double meridian, const std::vector<Polygon>& polygons) {
    return cutAll(meridian, true, polygons);
}

std::vector<Polygon> eastOf(double meridian, const std::vector<Polygon>& polygons) {
    return cutAll(meridian, false, polygons);
}

}  // namespace formats::geojson
