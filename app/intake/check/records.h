// How many records the sections of a file came to.
#ifndef APP_INTAKE_CHECK_RECORDS_H
#define APP_INTAKE_CHECK_RECORDS_H

#include <vector>

#include "app/intake/check/finding.h"

namespace program {

// Sets the records of each section from what the dataset holds. Where several sections of a code
// went to one place, the last of them has the count.
void countRecords(const Description& dataset, std::vector<FoundSection>& sections);

}  // namespace program

#endif
