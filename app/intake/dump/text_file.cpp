#include "app/intake/dump/dump.h"
#include "app/intake/dump/side_files.h"

namespace program {

void dumpTextFile(Dump& dump, const Dataset& dataset) {
    dumpDatasetLine(dump, dataset);
    dumpText(dump, "textFile", dataset.path);
}

}  // namespace program
