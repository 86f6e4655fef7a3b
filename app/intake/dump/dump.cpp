#include "app/intake/dump/dump.h"

#include <algorithm>

namespace program {

namespace {

struct Kind {
    const char* label;
    void (*dump)(Dump& dump, const Dataset& dataset);
};

// One line a kind.
// clang-format off
constexpr Kind kKinds[] = {
    {"Coverage", dumpCoverage},
    {"TIN", dumpTin},
    {"Lattice", dumpLattice},
    {"Grid", dumpGrid},
    {"Stack", dumpStack},
    {"Plot File", dumpPlot},
    {"Map", dumpMap},
    {"Font File", dumpFont},
    {"Lineset File", dumpSymbolSet},
    {"Markerset File", dumpSymbolSet},
    {"Shadeset File", dumpSymbolSet},
    {"Textset File", dumpSymbolSet},
    {"Info Datafile", dumpInfoDatafile},
    {"Text File", dumpTextFile},
};
// clang-format on

}  // namespace

bool Dump::wants(std::string_view className) const {
    return options_.classes.empty() || std::find(options_.classes.begin(), options_.classes.end(),
                                                 className) != options_.classes.end();
}

void dumpDatasetLine(Dump& dump, const Dataset& dataset) {
    if (!dump.wants("dataset")) return;
    JsonLine(dump.output(), "dataset").field("kind", dataset.kind).field("name", dataset.name);
}

void dump(const std::string& path, const DumpOptions& options, std::ostream& stream) {
    const Dataset dataset = datasets::findDataset(path, options.kind);
    Dump dump(stream, options);
    for (const Kind& kind : kKinds) {
        if (dataset.kind == kind.label) kind.dump(dump, dataset);
    }
}

}  // namespace program
