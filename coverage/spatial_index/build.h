// Building one index: SPXBGN, then SPXADD for each record, then SPXEND.
#ifndef COVERAGE_SPATIAL_INDEX_BUILD_H
#define COVERAGE_SPATIAL_INDEX_BUILD_H

#include <string_view>

#include "coverage/spatial_index/grid.h"
#include "stream/types.h"

namespace intake {

enum FeatureKind : int32_t {
    kAllKinds = 0,
    kPointKind = 1,
    kArcKind = 2,
    kPolygonKind = 3,
    kAnnotationKind = 4,
    kRegionKind = 5
};

// Starts an index of a number of records in an extent. status not 0 if there is no room for it.
void SPXBGN(int32_t recordCount, const Box& extent, Status& status);
// Takes in a record's box. status not 0 if no index has been begun.
void SPXADD(int32_t recordNumber, const Box& box, Status& status);
// Writes the index of a kind and subclass to its file, in place of one that stands there. status
// not 0 if that failed.
void SPXEND(const Name& coverage, std::string_view subclass, int32_t kind, Status& status);

}  // namespace intake

#endif
