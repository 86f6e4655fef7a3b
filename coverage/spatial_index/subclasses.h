// The subclasses of a coverage, one after the other.
#ifndef COVERAGE_SPATIAL_INDEX_SUBCLASSES_H
#define COVERAGE_SPATIAL_INDEX_SUBCLASSES_H

#include "host/qxfeat/subclasses.h"
#include "stream/report.h"
#include "stream/types.h"

namespace intake {

// Calls visit(subclass) for each that has a file of one of two file codes. False, with a message,
// if the coverage cannot be opened.
template <class Visit>
bool eachSubclass(const Name& coverage, int32_t firstCode, int32_t secondCode, Visit visit) {
    Handle walk{};
    Status status = kSuccess;
    call(copen_, walk, coverage, firstCode, secondCode, status);
    if (status != kSuccess) {
        nonftl("Cannot open %1% for scanning", coverage);
        return false;
    }
    for (;;) {
        FixedText<32> subclass;
        int32_t count = 0;
        call(centry_, walk, subclass, count);
        if (count == 0) break;
        visit(subclass);
    }
    call(cclose_, walk);
    return true;
}

}  // namespace intake

#endif
