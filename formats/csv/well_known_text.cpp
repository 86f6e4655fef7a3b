#include "formats/csv/well_known_text.h"

#include <algorithm>
#include <cmath>

#include "formats/numbers.h"

namespace formats::csv {

namespace {

using Part = std::span<const double>;

// 1 2, 3 4
void appendVertices(std::string& text, Part part, std::size_t dimensions) {
    text += '(';
    for (std::size_t i = 0; i + dimensions <= part.size(); i += dimensions) {
        if (i > 0) text += ", ";
        for (std::size_t j = 0; j < dimensions; ++j) {
            if (j > 0) text += ' ';
            appendShortest(text, part[i + j]);
        }
    }
    text += ')';
}

void appendParts(std::string& text, std::span<const Part> parts, std::size_t dimensions) {
    text += '(';
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) text += ", ";
        appendVertices(text, parts[i], dimensions);
    }
    text += ')';
}

}  // namespace

bool isFinite(const Geometry& geometry) {
    return std::ranges::all_of(geometry.parts, [](Part part) {
        return std::ranges::all_of(part, [](double each) { return std::isfinite(each); });
    });
}

void appendQuotedWellKnownText(std::string& text, GeometryType type, const Geometry& geometry) {
    const std::size_t dimensions = hasZ(type) ? 3 : 2;
    const auto parts = geometry.parts;
    text += '"';
    switch (type) {
        case GeometryType::kNone:
            break;
        case GeometryType::kPoint:
        case GeometryType::kPointZ:
            text += hasZ(type) ? "POINT Z " : "POINT ";
            appendVertices(text, parts.front(), dimensions);
            break;
        case GeometryType::kLineString:
        case GeometryType::kLineStringZ:
            text += hasZ(type) ? "LINESTRING Z " : "LINESTRING ";
            appendVertices(text, parts.front(), dimensions);
            break;
        case GeometryType::kMultiLineString:
            text += "MULTILINESTRING ";
            appendParts(text, parts, dimensions);
            break;
        case GeometryType::kPolygon:
        case GeometryType::kPolygonZ:
            text += hasZ(type) ? "POLYGON Z " : "POLYGON ";
            appendParts(text, parts, dimensions);
            break;
        case GeometryType::kMultiPolygon: {
            text += "MULTIPOLYGON (";
            if (geometry.ringCounts.empty()) appendParts(text, parts, dimensions);
            std::size_t first = 0;
            for (const uint32_t count : geometry.ringCounts) {
                if (first > 0) text += ", ";
                appendParts(text, parts.subspan(first, count), dimensions);
                first += count;
            }
            text += ')';
            break;
        }
    }
    text += '"';
}

}  // namespace formats::csv
