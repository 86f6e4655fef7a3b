// Which spatial indexes the source of the file had, and which are therefore built.
#ifndef COVERAGE_INDEX_REQUESTS_H
#define COVERAGE_INDEX_REQUESTS_H

#include <array>

namespace intake {

struct IndexRequests {
    bool any = false;
    std::array<bool, 5> kinds{};  // points, arcs, polygons, annotation, regions
};

extern IndexRequests indexRequests;

}  // namespace intake

#endif
