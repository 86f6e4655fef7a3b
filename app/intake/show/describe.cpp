#include <algorithm>
#include <sstream>

#include "app/intake/dump/dump.h"
#include "app/intake/export/systems.h"
#include "app/intake/show/show.h"
#include "datasets/coverage.h"
#include "datasets/symbol_sets.h"

namespace program {

namespace {

// The first of a set's symbols with numbers that no reader takes, and how many there are.
void addStraySymbols(const Dataset& dataset, Description& description) {
    constexpr std::size_t kMostShown = 20;
    if (!description.contains("recordBytes") || dataset.kind == "Font File") return;
    const auto strays = datasets::straySymbols(
        dataset.path, datasets::layoutOf(dataset.kind, description["recordBytes"]));
    if (strays.empty()) return;
    description["outside1To1060"] = strays.size();
    Description& shown = description["strays"] = Description::array();
    for (std::size_t each = 0; each < std::min(strays.size(), kMostShown); ++each) {
        shown.push_back({{"record", strays[each].record}, {"number", strays[each].number}});
    }
}

}  // namespace

Description describe(const std::string& path, const std::string& kind) {
    const Dataset dataset = datasets::findDataset(path, kind);
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
        if (first && dataset.kind == "Coverage") {
            if (const auto extent = datasets::extentOf(path)) head["extent"] = *extent;
        }
        describeHead(head, grids.empty() ? description : grids.back());
        first = false;
    }
    if (!grids.empty()) description["grids"] = std::move(grids);
    if (const std::string system = systemInWords(path); !system.empty()) {
        description["system"] = system;
    }
    addStraySymbols(dataset, description);
    description["files"] = filesOf(dataset);
    return description;
}

}  // namespace program
