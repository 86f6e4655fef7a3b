#include "formats/geopackage/geometry_blob.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace formats::geopackage {

namespace {

constexpr uint8_t kByteOrder = std::endian::native == std::endian::little ? 1 : 0;
constexpr uint8_t kEnvelopeXY = 1 << 1;

// Codes of well-known binary; those of geometries with z are so much higher.
enum Code : uint32_t {
    kPointCode = 1,
    kLineCode = 2,
    kPolygonCode = 3,
    kMultiLineCode = 5,
    kMultiPolygonCode = 6,
};
constexpr uint32_t kWithZ = 1000;

// Appends to bytes whose room is there already.
class Target {
  public:
    Target(std::vector<std::byte>& bytes, std::size_t size) {
        const std::size_t start = bytes.size();
        bytes.resize(start + size);
        next_ = bytes.data() + start;
    }

    template <class T>
    void put(T value) {
        std::memcpy(next_, &value, sizeof(T));
        next_ += sizeof(T);
    }
    void head(uint32_t code, bool z) {
        put(kByteOrder);
        put(code + (z ? kWithZ : 0));
    }
    void count(std::size_t number) { put(static_cast<uint32_t>(number)); }
    // Each part as the number of its vertices and their coordinates.
    void parts(std::span<const std::span<const double>> parts, std::size_t dimensions) {
        for (const std::span<const double> part : parts) {
            count(part.size() / dimensions);
            if (!part.empty()) std::memcpy(next_, part.data(), part.size_bytes());
            next_ += part.size_bytes();
        }
    }

  private:
    std::byte* next_;
};

constexpr std::size_t kHeadBytes = 8;
constexpr std::size_t kBoxBytes = 4 * sizeof(double);
constexpr std::size_t kCodeBytes = 5;  // the byte order and the code
constexpr std::size_t kCountBytes = sizeof(uint32_t);

bool isPoint(GeometryType type) {
    return type == GeometryType::kPoint || type == GeometryType::kPointZ;
}

std::size_t blobBytes(GeometryType type, const Geometry& geometry,
                      std::span<const uint32_t> ringCounts) {
    std::size_t bytes = kHeadBytes + kCodeBytes;
    if (isPoint(type)) return bytes + (hasZ(type) ? 3 : 2) * sizeof(double);
    bytes += kBoxBytes;
    for (const auto& part : geometry.parts) bytes += kCountBytes + part.size_bytes();
    switch (type) {
        case GeometryType::kMultiLineString:
            return bytes + kCountBytes + geometry.parts.size() * kCodeBytes;
        case GeometryType::kMultiPolygon:
            return bytes + kCountBytes + ringCounts.size() * (kCodeBytes + kCountBytes);
        case GeometryType::kPolygon:
        case GeometryType::kPolygonZ:
            return bytes + kCountBytes;
        default:
            return bytes;
    }
}

}  // namespace

void Box::add(const Box& other) {
    minX = std::min(minX, other.minX);
    minY = std::min(minY, other.minY);
    maxX = std::max(maxX, other.maxX);
    maxY = std::max(maxY, other.maxY);
}

Measured measured(GeometryType type, const Geometry& geometry) {
    const std::size_t dimensions = hasZ(type) ? 3 : 2;
    Box box;
    double sum = 0;  // of differences that are 0 unless a coordinate is not finite
    for (const std::span<const double> part : geometry.parts) {
        for (std::size_t i = 0; i + dimensions <= part.size(); i += dimensions) {
            const double x = part[i];
            const double y = part[i + 1];
            box.minX = x < box.minX ? x : box.minX;
            box.maxX = x > box.maxX ? x : box.maxX;
            box.minY = y < box.minY ? y : box.minY;
            box.maxY = y > box.maxY ? y : box.maxY;
            sum += (x - x) + (y - y);
            if (dimensions == 3) sum += part[i + 2] - part[i + 2];
        }
    }
    if (std::isnan(sum)) return {Outcome::kNotFinite, box};
    return {box.empty() ? Outcome::kEmpty : Outcome::kMade, box};
}

void appendBlob(std::vector<std::byte>& bytes, GeometryType type, int32_t system,
                const Geometry& geometry, const Box& box) {
    const bool z = hasZ(type);
    const std::size_t dimensions = z ? 3 : 2;
    const auto parts = geometry.parts;
    const auto all = static_cast<uint32_t>(parts.size());
    const std::span<const uint32_t> ringCounts =
        geometry.ringCounts.empty() ? std::span(&all, 1) : geometry.ringCounts;

    Target target(bytes, blobBytes(type, geometry, ringCounts));
    target.put('G');
    target.put('P');
    target.put(uint8_t{0});  // version 1
    // The box of a point is the point.
    target.put(static_cast<uint8_t>(kByteOrder | (isPoint(type) ? 0 : kEnvelopeXY)));
    target.put(system);
    if (!isPoint(type)) {
        for (const double bound : {box.minX, box.maxX, box.minY, box.maxY}) target.put(bound);
    }

    switch (type) {
        case GeometryType::kNone:
            break;
        case GeometryType::kPoint:
        case GeometryType::kPointZ:
            target.head(kPointCode, z);
            for (const double each : parts.front().first(dimensions)) target.put(each);
            break;
        case GeometryType::kLineString:
        case GeometryType::kLineStringZ:
            target.head(kLineCode, z);
            target.parts(parts, dimensions);
            break;
        case GeometryType::kMultiLineString:
            target.head(kMultiLineCode, z);
            target.count(parts.size());
            for (std::size_t i = 0; i < parts.size(); ++i) {
                target.head(kLineCode, z);
                target.parts(parts.subspan(i, 1), dimensions);
            }
            break;
        case GeometryType::kPolygon:
        case GeometryType::kPolygonZ:
            target.head(kPolygonCode, z);
            target.count(parts.size());
            target.parts(parts, dimensions);
            break;
        case GeometryType::kMultiPolygon: {
            target.head(kMultiPolygonCode, z);
            target.count(ringCounts.size());
            std::size_t first = 0;
            for (const uint32_t rings : ringCounts) {
                target.head(kPolygonCode, z);
                target.count(rings);
                target.parts(parts.subspan(first, rings), dimensions);
                first += rings;
            }
            break;
        }
    }
}

}  // namespace formats::geopackage
