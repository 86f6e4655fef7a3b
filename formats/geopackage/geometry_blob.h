// Geometries as GeoPackage stores them: a short head, then well-known binary.
#ifndef FORMATS_GEOPACKAGE_GEOMETRY_BLOB_H
#define FORMATS_GEOPACKAGE_GEOMETRY_BLOB_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "formats/writer.h"

namespace formats::geopackage {

struct Box {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();

    bool empty() const { return minX > maxX; }
    void add(const Box& other);
};

enum class Outcome { kMade, kEmpty, kNotFinite };

struct Measured {
    Outcome outcome;
    Box box;
};

// Looks at all coordinates of a geometry.
Measured measured(GeometryType type, const Geometry& geometry);

// Appends the blob of a geometry that measured() found to be kMade.
void appendBlob(std::vector<std::byte>& bytes, GeometryType type, int32_t system,
                const Geometry& geometry, const Box& box);

}  // namespace formats::geopackage

#endif
