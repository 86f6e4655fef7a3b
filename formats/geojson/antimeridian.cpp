#include "formats/geojson/antimeridian.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "formats/geojson/half_plane.h"

namespace formats::geojson {

namespace {

constexpr double kTurn = 360;
constexpr double kHalf = 180;

// Closer to the meridian than the last decimal that is written is on it.
constexpr double kTolerance = 5e-8;

// Turn 0 is from -180 to 180, turn 1 from there to 540. A place where two meet is in both.
double lowerTurn(double longitude) { return std::ceil((longitude - kHalf - kTolerance) / kTurn); }
double upperTurn(double longitude) { return std::floor((longitude + kHalf + kTolerance) / kTurn); }

// Puts a path of one turn between -180 and 180.
void bringHome(Path& path, double turn) {
    for (Vertex& vertex : path) {
        vertex.x = std::clamp(vertex.x - turn * kTurn, -kHalf, kHalf);
    }
}

Vertex between(const Vertex& from, const Vertex& to, double longitude) {
    const double part = (longitude - from.x) / (to.x - from.x);
    return {longitude, from.y + part * (to.y - from.y), from.z + part * (to.z - from.z)};
}

// A ring around a pole that begins where it crosses the meridian, and ends there a turn later: a
// seam does not show there.
Path openedAtMeridian(const Path& ring) {
    const double turn = ring.back().x - ring.front().x;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        const auto [west, east] = std::minmax(ring[i - 1].x, ring[i].x);
        const double meridian = kHalf + kTurn * std::ceil((west - kHalf) / kTurn);
        if (west == east || meridian > east) continue;
        const Vertex seam = between(ring[i - 1], ring[i], meridian);
        Path opened{seam};
        opened.insert(opened.end(), ring.begin() + static_cast<std::ptrdiff_t>(i), ring.end());
        for (std::size_t j = 1; j < i; ++j) {
            opened.push_back({ring[j].x + turn, ring[j].y, ring[j].z});
        }
        opened.push_back({seam.x + turn, seam.y, seam.z});
        return opened;
    }
    return ring;
}

}  // namespace

Range longitudes(const Path& path) {
    Range range;
    for (const Vertex& vertex : path) {
        range.least = std::min(range.least, vertex.x);
        range.most = std::max(range.most, vertex.x);
    }
    return range;
}

double normalized(double longitude) {
    // A place on the meridian stays on the side where it is.
    if (std::abs(longitude) <= kHalf) return longitude;
    return longitude - kTurn * std::round(longitude / kTurn);
}

void unroll(Path& path) {
    for (std::size_t i = 1; i < path.size(); ++i) {
        path[i].x -= kTurn * std::round((path[i].x - path[i - 1].x) / kTurn);
    }
}

double area(const Path& ring) {
    double twice = 0;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        twice += (ring[i - 1].x - ring[0].x) * (ring[i].y - ring[0].y) -
                 (ring[i].x - ring[0].x) * (ring[i - 1].y - ring[0].y);
    }
    return twice / 2;
}

bool windsAround(const Path& ring) {
    return !ring.empty() && std::abs(ring.back().x - ring.front().x) >= kHalf;
}

void closeAroundPole(Path& outer, const Path* hole) {
    const double turn = outer.back().x - outer.front().x;
    outer = openedAtMeridian(outer);
    const double first = outer.front().x;
    const double last = outer.back().x;
    if (hole) {
        // Runs the other way, from where the outer ring ends.
        const Path back = openedAtMeridian(*hole);
        const double shift = last - back.front().x;
        for (const Vertex& vertex : back) outer.push_back({vertex.x + shift, vertex.y, vertex.z});
    } else {
        const double pole = turn > 0 ? 90 : -90;
        const double z = outer.front().z;
        outer.push_back({last, pole, z});
        outer.push_back({first, pole, z});
    }
    outer.push_back(Vertex(outer.front()));
}

std::vector<Path> cutLine(const Path& line) {
    std::vector<Path> pieces;
    if (line.empty()) return pieces;
    const Range range = longitudes(line);
    const double first = upperTurn(range.least);
    const double last = lowerTurn(range.most);
    if (last <= first) {
        pieces.push_back(line);
        bringHome(pieces.back(), std::clamp(0.0, last, first));
        return pieces;
    }
    // A piece lies in one turn. It ends where the line goes on in another one.
    Path piece{line.front()};
    const bool westwards = line.size() > 1 && line[1].x < line[0].x;
    double turn = westwards ? lowerTurn(line[0].x) : upperTurn(line[0].x);
    for (std::size_t i = 1; i < line.size(); ++i) {
        const Vertex& next = line[i];
        while (lowerTurn(next.x) > turn || upperTurn(next.x) < turn) {
            const double step = lowerTurn(next.x) > turn ? 1 : -1;
            const Vertex cut = between(line[i - 1], next, turn * kTurn + step * kHalf);
            if (piece.back() != cut) piece.push_back(cut);
            bringHome(piece, turn);
            if (piece.size() > 1) pieces.push_back(std::move(piece));
            piece = {cut};
            turn += step;
        }
        if (piece.back() != next) piece.push_back(next);
    }
    bringHome(piece, turn);
    if (piece.size() > 1) pieces.push_back(std::move(piece));
    return pieces;
}

std::vector<Polygon> cutPolygon(Polygon polygon) {
    std::vector<Polygon> pieces;
    if (polygon.empty() || polygon.front().empty()) return pieces;
    const Range range = longitudes(polygon.front());
    const double first = upperTurn(range.least);
    const double last = std::max(first, lowerTurn(range.most));
    // A hole lies where its outer ring is.
    for (std::size_t i = 1; i < polygon.size(); ++i) {
        const Range hole = longitudes(polygon[i]);
        const double middle = (hole.least + hole.most) - (range.least + range.most);
        const double turns = std::round(middle / 2 / kTurn);
        for (Vertex& vertex : polygon[i]) vertex.x -= turns * kTurn;
    }
    for (double turn = first; turn <= last; ++turn) {
        std::vector<Polygon> parts{polygon};
        if (turn > first) parts = eastOf(turn * kTurn - kHalf, parts);
        if (turn < last) parts = westOf(turn * kTurn + kHalf, parts);
        for (Polygon& part : parts) {
            for (Path& ring : part) bringHome(ring, turn);
            pieces.push_back(std::move(part));
        }
    }
    return pieces;
}

}  // namespace formats::geojson
