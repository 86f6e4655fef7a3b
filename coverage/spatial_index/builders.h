// What goes over the features of one kind and builds their index.
#ifndef COVERAGE_SPATIAL_INDEX_BUILDERS_H
#define COVERAGE_SPATIAL_INDEX_BUILDERS_H

#include "coverage/spatial_index/grid.h"
#include "stream/types.h"

namespace intake {

// Statuses of a builder.
inline constexpr Status kNoFeatures = -1;  // of annotation and regions: no index could be made
inline constexpr Status kNoIndex = -2;     // the index could not be made
inline constexpr Status kBoxesOnly = -3;   // polygons without topology

Status indexLabels(const Name& coverage, const Box& extent);
Status indexArcs(const Name& coverage, const Box& extent);
Status indexPolygons(const Name& coverage, const Box& extent);
// One index a subclass.
Status indexAnnotation(const Name& coverage, const Box& extent);
Status indexRegions(const Name& coverage, const Box& extent);

}  // namespace intake

#endif
