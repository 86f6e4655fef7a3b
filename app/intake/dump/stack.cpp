#include "app/intake/dump/dump.h"
#include "app/intake/dump/side_files.h"
#include "app/intake/dump/tables.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxgridio.h"

namespace program {

namespace {

using qx::call;

std::vector<std::string> membersOf(const std::string& stack) {
    std::vector<std::string> members;
    int32_t count = 0;
    int32_t status = 0;
    call(saknly_, std::string_view(stack), count, status);
    for (int32_t number = 1; number <= count && status == 0; ++number) {
        qx::FixedText<80> name;
        call(stkgnm_, std::string_view(stack), number, name, status);
        if (status == 0) members.emplace_back(name.view());
    }
    return members;
}

// The grids lie beside the stack. A name that leads elsewhere belongs to no grid of it.
void dumpMember(Dump& dump, const Dataset& stack, const std::string& name) {
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) return;
    qx::Name directory;
    qx::Name path;
    call(edirs_, std::string_view(stack.path), directory);
    call(ejoins_, directory, std::string_view(name), path);
    int32_t isGrid = 0;
    call(grdexi_, path, isGrid);
    if (isGrid & 1) dumpGrid(dump, {std::string(path.view()), name, "Grid"});
}

}  // namespace

void dumpStack(Dump& dump, const Dataset& dataset) {
    const std::vector<std::string> members = membersOf(dataset.path);
    dumpDatasetLine(dump, dataset);
    if (dump.wants("stack")) {
        JsonLine line(dump.output(), "stack");
        line.key("members").beginList();
        for (const std::string& member : members) line.value(member);
        line.endList();
    }
    dumpSideTexts(dump, dataset.path);
    dumpTables(dump, dataset.path);
    for (const std::string& member : members) dumpMember(dump, dataset, member);
}

}  // namespace program
