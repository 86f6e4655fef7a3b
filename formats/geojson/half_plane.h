// What lies on one side of a meridian.
#ifndef FORMATS_GEOJSON_HALF_PLANE_H
#define FORMATS_GEOJSON_HALF_PLANE_H

#include <vector>

#include "formats/geojson/antimeridian.h"

namespace formats::geojson {

// The parts of polygons on one side, none of which runs along the meridian and back: a polygon
// comes apart into as many as it has there. Outer rings run counter-clockwise, holes clockwise.
std::vector<Polygon> westOf(double meridian, const std::vector<Polygon>& polygons);
std::vector<Polygon> eastOf(double meridian, const std::vector<Polygon>& polygons);

}  // namespace formats::geojson

#endif
