#include "app/intake/commands/commands.h"

namespace program {

void addKind(CLI::App& command, std::string& kind) {
    // The labels of docs/dump-format.md.
    static const std::vector<std::string> kLabels = {
        "Coverage",     "Info Datafile", "Text File",    "Plot File",      "TIN",
        "Lattice",      "Font File",     "Lineset File", "Markerset File", "Shadeset File",
        "Textset File", "Map",           "Grid",         "Stack"};
    command.add_option("--kind", kind, "What to take DATASET for, where its bytes leave it open")
        ->type_name("LABEL")
        ->transform(CLI::IsMember(kLabels, CLI::ignore_case).description(""), choices(kLabels));
}

}  // namespace program
