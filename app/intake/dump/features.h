// The features of a coverage in a dump: for each the entry of the dataset line's counts, written
// only where the feature's file exists, and its records.
#ifndef APP_INTAKE_DUMP_FEATURES_H
#define APP_INTAKE_DUMP_FEATURES_H

#include "app/intake/dump/dump.h"

namespace program {

void countArcs(const Dataset& dataset, JsonLine& line);
void dumpArcs(Dump& dump, const Dataset& dataset);

}  // namespace program

#endif
