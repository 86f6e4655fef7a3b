// Which indexes are built, and what is said when one is not.
#include <array>
#include <cstdlib>

#include "coverage/index_requests.h"
#include "coverage/sections.h"
#include "coverage/spatial_index/build.h"
#include "coverage/spatial_index/build_state.h"
#include "coverage/spatial_index/builders.h"
#include "host/qxfeat.h"
#include "stream/reader_state.h"
#include "stream/report.h"

namespace intake {

namespace {

struct Kind {
    Status (*build)(const Name& coverage, const Box& extent);
    Status cannot;  // the status of the builder that no index could be made for
    std::string_view cannotText;
    std::string_view missingText;  // of features that are not there, if they were asked for alone
    std::string_view requestText;
};

constexpr std::array<Kind, 5> kKinds = {{
    {indexLabels, kNoIndex, "Cannot create label index for %1%.",
     "Coverage %1% does not contain label points", "Error creating spatial index for POINTS"},
    {indexArcs, kNoIndex, "Cannot create arc index for %1%.", "Coverage %1% does not contain arcs",
     "Error creating spatial index for ARCS"},
    {indexPolygons, kNoIndex, "Cannot create polygon index for %1%.",
     "Coverage %1% does not contain polygon topology", "Error creating spatial index for POLYGONS"},
    {indexAnnotation, kNoFeatures, "Cannot create annotation index for %1%.", "",
     "Error creating spatial index for ANNOTATIONS"},
    {indexRegions, kNoFeatures, "Cannot create region index for %1%.", "",
     "Error creating spatial index for REGIONS"},
}};

// Builds the index of one kind, or of all for kind 0.
void SPXBLD(const Name& coverage, int32_t kind, Status& status) {
    Box extent;
    call(bndget_, coverage, extent, status);
    if (status != kSuccess) call(boxget_, coverage, extent, status);
    if (status != kSuccess) {
        nonftl("Coverage %1% does not exist.", coverage);
        status = kReported;
        return;
    }
    for (std::size_t index = 0; index < kKinds.size(); ++index) {
        const bool alone = kind == static_cast<int32_t>(index) + 1;
        if (kind != kAllKinds && !alone) continue;
        const Kind& each = kKinds[index];
        const Status built = each.build(coverage, extent);
        if (built == each.cannot) {
            nonftl(each.cannotText, coverage);
            status = kNoIndex;
            return;
        }
        if (built == kBoxesOnly || (built == kNoFeatures && alone)) {
            warn(each.missingText, coverage);
            status = kNoIndex;
            if (alone) return;
        }
    }
    status = kSuccess;
}

}  // namespace

namespace {

void buildRequested(const Name& dataset, Status& status) {
    ++indexRequests.builds;
    indexRequests.linesBuilt = reader.logicalLines;
    indexRequests.waiting = false;
    for (std::size_t index = 0; index < kKinds.size(); ++index) {
        if (!indexRequests.kinds[index]) continue;
        SPXBLD(dataset, static_cast<int32_t>(index) + 1, status);
        if (status != kSuccess) warn(kKinds[index].requestText);
    }
}

}  // namespace

void IMPSPX(const Name& dataset, Status& status) {
    if (!indexRequests.any) return;
    // A file of thousands of empty table sections would have everything indexed for each of them.
    // Behind the first few the next build waits until the file is twice as long, or ends.
    constexpr int64_t kFewBuilds = 16;
    indexRequests.waiting =
        indexRequests.builds >= kFewBuilds && reader.logicalLines < 2 * indexRequests.linesBuilt;
    if (!indexRequests.waiting) buildRequested(dataset, status);
}

void finishIndexes(const Name& dataset) {
    Status status = kSuccess;
    if (indexRequests.waiting) buildRequested(dataset, status);
}

void rearmCoverage() { releaseBuild(); }

}  // namespace intake
