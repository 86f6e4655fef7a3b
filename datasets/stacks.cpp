#include "datasets/stacks.h"

#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxgridio.h"

namespace datasets {

using qx::call;

bool isStack(const std::string& path) {
    int32_t count = 0;
    int32_t status = 0;
    call(saknly_, std::string_view(path), count, status);
    return status == 0;
}

std::vector<std::string> stackMembers(const std::string& stack) {
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

std::vector<Dataset> memberGrids(const std::string& stack) {
    std::vector<Dataset> grids;
    qx::Name directory;
    call(edirs_, std::string_view(stack), directory);
    for (const std::string& name : stackMembers(stack)) {
        if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos) {
            continue;
        }
        qx::Name path;
        call(ejoins_, directory, std::string_view(name), path);
        int32_t isGrid = 0;
        call(grdexi_, path, isGrid);
        if (isGrid & 1) grids.push_back({std::string(path.view()), name, "Grid"});
    }
    return grids;
}

}  // namespace datasets
