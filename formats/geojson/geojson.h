// GeoJSON as RFC 7946 has it: longitude and latitude on WGS 84, rounded to 7 decimals, outer rings
// counter-clockwise, lines and polygons cut at the antimeridian.
//
// One file holds one collection, whatever the number of layers; the property "layer" tells them
// apart. Texts are a further member of it. A folder holds a file NAME.geojson for each layer, and
// texts beside them. The id of a feature is its fid, its properties are its columns; rows without a
// geometry are features whose geometry is null. A number that is not finite is null.
//
// Taken as they are, coordinates are printed with as many digits as they have, and are not cut. The
// collection then has the member "crs" of older GeoJSON if the reference system has a code.
#ifndef FORMATS_GEOJSON_GEOJSON_H
#define FORMATS_GEOJSON_GEOJSON_H

#include "formats/writer.h"

namespace formats::geojson {

// One collection a file.
const WriterMaker& collections();

// One feature a line, and nothing around them. Texts have no place in such a file.
const WriterMaker& lines();

}  // namespace formats::geojson

#endif
