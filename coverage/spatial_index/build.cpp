#include "coverage/spatial_index/build.h"

#include <cerrno>
#include <new>

#include "coverage/spatial_index/build_state.h"
#include "host/qxbase.h"
#include "host/qxfeat.h"

namespace intake {

namespace {

int32_t fileCode(int32_t kind) {
    constexpr int32_t kRegionIndex = 93;
    return kind == kRegionKind ? kRegionIndex : 45 + kind;
}

}  // namespace

IndexBuild indexBuild;

void releaseBuild() {
    if (indexBuild.scratch != 0) call(scrgivC, indexBuild.scratch);
    indexBuild = {};
}

void SPXBGN(int32_t recordCount, const Box& extent, Status& status) {
    releaseBuild();
    indexBuild.grid = Grid(extent);
    indexBuild.recordCount = recordCount;
    indexBuild.depth = treeDepth(recordCount);
    status = kReported;
    try {
        indexBuild.counts.assign(std::size_t{1} << indexBuild.depth, 0);
    } catch (const std::bad_alloc&) {
        // Not all builders look at the status.
        wrfailC("a spatial index", ENOMEM);
        return;
    }
    call(scrgetC, indexBuild.scratch);
    if (indexBuild.scratch != 0) status = kSuccess;
}

void SPXADD(int32_t recordNumber, const Box& box, Status& status) {
    status = kReported;
    if (indexBuild.scratch == 0) return;
    const GridBox cells = indexBuild.grid.map(box);
    const ScratchEntry entry{nodeOf(cells, indexBuild.depth), cells.packed(), recordNumber};
    ++indexBuild.counts[static_cast<std::size_t>(entry.place)];
    ++indexBuild.added;
    call(BwriteC, indexBuild.scratch, kEntryWords, &entry.place);
    status = kSuccess;
}

void SPXEND(const Name& coverage, std::string_view subclass, int32_t kind, Status& status) {
    constexpr int32_t kDoubleType = 2;
    status = kReported;
    if (indexBuild.scratch == 0) return;
    int32_t type = 0;
    Name path;
    call(ctype_, coverage, type);
    call(fname_, coverage, subclass, path, fileCode(kind));
    SPXFIN(path, fileCode(kind), type == kDoubleType, status);
}

}  // namespace intake
