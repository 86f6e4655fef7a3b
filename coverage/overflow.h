// Numbers that did not fit their ten columns when the file was written stand there as stars.
#ifndef COVERAGE_OVERFLOW_H
#define COVERAGE_OVERFLOW_H

#include "stream/types.h"

namespace intake {

// Whether ten stars stand from a column on; they are then replaced by a 0.
inline bool clearOverflow(Line& line, std::size_t firstColumn) {
    if (line.columns(firstColumn, firstColumn + 9) != "**********") return false;
    qx::padText(line.data() + firstColumn - 1, 9, "");
    line[firstColumn + 8] = '0';
    return true;
}

}  // namespace intake

#endif
