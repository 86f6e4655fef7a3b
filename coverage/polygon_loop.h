// The records of polygons, which coverages and their regions share.
#ifndef COVERAGE_POLYGON_LOOP_H
#define COVERAGE_POLYGON_LOOP_H

#include <string_view>

#include "stream/types.h"

namespace intake {

// Makes the memory list in which the arcs of one polygon gather; status as the operation gave it.
void makeArcList(Handle& arcs, Status& status);

// Reads polygons to the arc count -1 and writes each to an open polygon file. routine stands in the
// message for a count that is none, which ends the import.
void readPolygons(Handle polygons, Handle arcs, int32_t precision, std::string_view routine);

}  // namespace intake

#endif
