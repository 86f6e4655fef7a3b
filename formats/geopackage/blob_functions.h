// What SQL may ask of the geometries that geometry_blob.h makes.
#ifndef FORMATS_GEOPACKAGE_BLOB_FUNCTIONS_H
#define FORMATS_GEOPACKAGE_BLOB_FUNCTIONS_H

#include "formats/geopackage/database.h"

namespace formats::geopackage {

// Adds blob_side(geom, n), of its envelope: 0 and 1 the least and largest x, 2 and 3 of y; nothing
// for an empty geometry. And blob_with_system(geom, id), the same in another reference system.
void addBlobFunctions(Database& database);

}  // namespace formats::geopackage

#endif
