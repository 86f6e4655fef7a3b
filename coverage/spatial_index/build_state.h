// The index that is being built: one at a time.
#ifndef COVERAGE_SPATIAL_INDEX_BUILD_STATE_H
#define COVERAGE_SPATIAL_INDEX_BUILD_STATE_H

#include "coverage/spatial_index/node_tree.h"
#include "stream/types.h"

namespace intake {

// What waits in the scratch file of each record that was taken in.
struct ScratchEntry {
    int32_t place = 0;  // number of the node, later of its first block
    int32_t box = 0;
    int32_t record = 0;
};
inline constexpr int32_t kEntryWords = 3;
static_assert(sizeof(ScratchEntry) == kEntryWords * sizeof(int32_t));

struct IndexBuild {
    Grid grid;
    int32_t depth = 0;
    int32_t recordCount = 0;  // as given at the start
    Handle scratch = 0;       // 0 while nothing is being built
    int64_t added = 0;
    NodeCounts counts;
};

extern IndexBuild indexBuild;

// Writes the file of the index at a path, and forgets the build.
void SPXFIN(const Name& path, int32_t fileCode, bool doublePrecision, Status& status);
// Forgets a build.
void releaseBuild();

}  // namespace intake

#endif
