#include "app/intake/dump/dump.h"
#include "datasets/stacks.h"

namespace program {

void dumpStack(Dump& dump, const Dataset& dataset) {
    const std::vector<std::string> members = datasets::stackMembers(dataset.path);
    dumpDatasetLine(dump, dataset);
    if (dump.wants("stack")) {
        JsonLine line(dump.output(), "stack");
        line.key("members").beginList();
        for (const std::string& member : members) line.value(member);
        line.endList();
    }
    dumpSideTexts(dump, dataset.path);
    dumpTables(dump, dataset.path);
    for (const Dataset& grid : datasets::memberGrids(dataset.path)) dumpGrid(dump, grid);
}

}  // namespace program
