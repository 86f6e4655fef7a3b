#include "formats/geojson/places.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace formats::geojson {

namespace {

// Beyond two turns a number is no longitude. This bounds the pieces of a polygon, too.
constexpr double kMostLongitude = 720;
constexpr double kMostLatitude = 90;
// What rounding may add to a pole.
constexpr double kTolerance = 1e-6;

bool isPoint(GeometryType type) {
    return type == GeometryType::kPoint || type == GeometryType::kPointZ;
}

bool isPolygon(GeometryType type) {
    return type == GeometryType::kPolygon || type == GeometryType::kPolygonZ ||
           type == GeometryType::kMultiPolygon;
}

void extend(Range& range, const Range& other) {
    range.least = std::min(range.least, other.least);
    range.most = std::max(range.most, other.most);
}

// Outer rings run counter-clockwise and holes clockwise.
void turnRings(std::span<Path> polygon) {
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const double signedArea = area(polygon[i]);
        if (i == 0 ? signedArea < 0 : signedArea > 0) std::ranges::reverse(polygon[i]);
    }
}

}  // namespace

Places::Places(const Layer& layer, Transform transform)
    : type_(layer.geometry),
      projected_(layer.system.kind == crs::Kind::Projected),
      degreesPerUnit_(layer.system.perUnit > 0 ? layer.system.perUnit : 1),
      transform_(std::move(transform)) {}

bool Places::take(const Geometry& geometry) {
    paths_.clear();
    polygons_.clear();
    x_ = {};
    y_ = {};
    z_ = {};
    if (!read(geometry)) return false;
    const auto all = static_cast<uint32_t>(paths_.size());
    const std::span<const uint32_t> ringCounts =
        geometry.ringCounts.empty() ? std::span(&all, 1) : geometry.ringCounts;
    if (isPolygon(type_)) {
        // While the coordinates are the layer's own, from which side a ring is seen is known.
        std::span<Path> rest(paths_);
        for (const uint32_t count : ringCounts) {
            turnRings(rest.first(count));
            rest = rest.subspan(count);
        }
    }
    if (transform_ && !toLongitudes()) return false;
    if (isPolygon(type_)) return makePolygons(ringCounts);
    for (const Path& path : paths_) extend(x_, longitudes(path));
    if (!transform_ || x_.home()) return true;
    if (isPoint(type_)) {
        for (Path& path : paths_) path.front().x = normalized(path.front().x);
        x_ = longitudes(paths_.front());
        return true;
    }
    std::vector<Path> lines;
    for (const Path& path : paths_) std::ranges::move(cutLine(path), std::back_inserter(lines));
    paths_ = std::move(lines);
    return true;
}

// The paths as they are given.
bool Places::read(const Geometry& geometry) {
    const bool z = hasZ(type_);
    const std::size_t dimensions = z ? 3 : 2;
    double sum = 0;  // of differences that are 0 unless a coordinate is not finite
    for (const std::span<const double> part : geometry.parts) {
        Path& path = paths_.emplace_back(part.size() / dimensions);
        const double* next = part.data();
        for (Vertex& vertex : path) {
            vertex = {next[0], next[1], z ? next[2] : 0};
            next += dimensions;
            sum += (vertex.x - vertex.x) + (vertex.y - vertex.y) + (vertex.z - vertex.z);
            extend(y_, {vertex.y, vertex.y});
            extend(z_, {vertex.z, vertex.z});
        }
    }
    return !std::isnan(sum);
}

// All paths to longitudes that run on beyond 180, and latitudes.
bool Places::toLongitudes() {
    pairs_.clear();
    for (const Path& path : paths_) {
        for (const Vertex& vertex : path) {
            pairs_.push_back(vertex.x);
            pairs_.push_back(vertex.y);
        }
    }
    transform_(pairs_);
    y_ = {};
    const double* next = pairs_.data();
    for (Path& path : paths_) {
        for (Vertex& vertex : path) {
            const double before = vertex.x * degreesPerUnit_;
            vertex.x = *next++;
            vertex.y = *next++;
            if (!projected_) {
                const double turns = (before - vertex.x) / 360;
                if (std::abs(turns) > 0.5) vertex.x += 360 * std::round(turns);
            }
            // NaN is no place either.
            if (!(std::abs(vertex.x) <= kMostLongitude &&
                  std::abs(vertex.y) <= kMostLatitude + kTolerance)) {
                return false;
            }
            vertex.y = std::clamp(vertex.y, -kMostLatitude, kMostLatitude);
            extend(y_, {vertex.y, vertex.y});
        }
        if (projected_) unroll(path);
    }
    return true;
}

bool Places::makePolygons(std::span<const uint32_t> ringCounts) {
    auto next = std::make_move_iterator(paths_.begin());
    for (const uint32_t count : ringCounts) {
        if (!makePolygon(Polygon(next, next + count))) return false;
        next += count;
    }
    paths_.clear();
    return true;
}

bool Places::makePolygon(Polygon polygon) {
    if (polygon.empty() || polygon.front().empty()) return true;
    if (transform_) {
        if (windsAround(polygon.front())) {
            const auto hole = std::find_if(polygon.begin() + 1, polygon.end(), windsAround);
            closeAroundPole(polygon.front(), hole == polygon.end() ? nullptr : &*hole);
            if (hole != polygon.end()) polygon.erase(hole);
        }
        const Range range = longitudes(polygon.front());
        if (range.least < -kMostLongitude || range.most > kMostLongitude) return false;
        extend(x_, range);
        for (const Vertex& vertex : polygon.front()) {
            extend(y_, {vertex.y, vertex.y});
        }
        if (!std::ranges::all_of(polygon,
                                 [](const Path& ring) { return longitudes(ring).home(); })) {
            takeCut(cutPolygon(std::move(polygon)));
            return true;
        }
    } else {
        extend(x_, longitudes(polygon.front()));
    }
    turnRings(polygon);
    polygons_.push_back(std::move(polygon));
    return true;
}

void Places::takeCut(std::vector<Polygon> pieces) {
    for (Polygon& piece : pieces) {
        turnRings(piece);
        polygons_.push_back(std::move(piece));
    }
}

std::vector<double> Places::bounds() const {
    double west = x_.least;
    double east = x_.most;
    if (transform_ && !x_.home()) {
        const bool whole = east - west >= 360;
        west = whole ? -180 : normalized(west);
        east = whole ? 180 : normalized(east);
    }
    if (!hasZ(type_)) return {west, y_.least, east, y_.most};
    return {west, y_.least, z_.least, east, y_.most, z_.most};
}

}  // namespace formats::geojson
