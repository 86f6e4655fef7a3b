// The section routines of a coverage.
#ifndef COVERAGE_SECTIONS_H
#define COVERAGE_SECTIONS_H

#include "stream/types.h"

namespace intake {

// Each takes the coverage's name, the section's precision code, and a status: kSuccess when the
// section was read to its end, kReported when its file could not be made.
void IMPARC(const Name& dataset, const int32_t& precision, Status& status);

}  // namespace intake

#endif
