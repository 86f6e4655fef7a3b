// Which spatial indexes the source of the file had, and which are therefore built.
#ifndef COVERAGE_INDEX_REQUESTS_H
#define COVERAGE_INDEX_REQUESTS_H

#include <array>
#include <cstdint>

namespace intake {

struct IndexRequests {
    bool any = false;
    std::array<bool, 5> kinds{};  // points, arcs, polygons, annotation, regions
    int64_t builds = 0;           // how often they have been built in this import
    int64_t linesBuilt = 0;       // lines of the file before the last time
    bool waiting = false;         // for the end of the file
};

extern IndexRequests indexRequests;

}  // namespace intake

#endif
