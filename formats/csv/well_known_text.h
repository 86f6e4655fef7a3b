// Geometries as well-known text: POINT Z (1 2 3), POLYGON ((0 0, 1 0, 1 1, 0 0)).
#ifndef FORMATS_CSV_WELL_KNOWN_TEXT_H
#define FORMATS_CSV_WELL_KNOWN_TEXT_H

#include <string>

#include "formats/writer.h"

namespace formats::csv {

bool isFinite(const Geometry& geometry);

// In quotes: it has commas, but no quotes of its own. Coordinates have as many digits as they need.
void appendQuotedWellKnownText(std::string& text, GeometryType type, const Geometry& geometry);

}  // namespace formats::csv

#endif
