#include <array>
#include <sstream>

#include "app/intake/dump/dump.h"
#include "app/intake/show/show.h"
#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

namespace {

// Where a coverage lies, as the heads of its feature files tell.
void addExtent(const std::string& path, nlohmann::json& head) {
    std::array<double, 4> box{};
    int32_t status = 0;
    qx::call(boxget_, std::string_view(path), box, status);
    if (status == 0) head["extent"] = box;
}

}  // namespace

Description describe(const std::string& path, const std::string& kind) {
    const Dataset dataset = findDataset(path, kind);
    std::ostringstream text;
    dump(path, {headClasses(), dataset.kind}, text);
    Description description;
    Description grids = Description::array();
    std::istringstream lines(text.str());
    bool first = true;
    for (std::string line; std::getline(lines, line);) {
        auto head = nlohmann::json::parse(line);
        // The dataset lines behind the first begin the grids of a stack.
        if (head["class"] == "dataset" && !first) grids.push_back(Description::object());
        if (first && dataset.kind == "Coverage") addExtent(path, head);
        describeHead(head, grids.empty() ? description : grids.back());
        first = false;
    }
    if (!grids.empty()) description["grids"] = std::move(grids);
    description["files"] = filesOf(dataset);
    return description;
}

}  // namespace program
