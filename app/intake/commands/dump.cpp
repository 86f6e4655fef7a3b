#include "app/intake/dump/dump.h"

#include "app/intake/commands/commands.h"
#include "app/intake/commands/reading.h"
#include "app/intake/workspace/changes.h"

namespace program {

namespace {

// The classes of docs/dump-format.md.
const std::vector<std::string> kClassNames = {
    "dataset",    "arc",        "label",       "centroid",    "polygon",
    "tolerance",  "annotation", "link",        "addressText", "addressIntegers",
    "regionPair", "region",     "log",         "projection",  "metadata",
    "textFile",   "index",      "indexBlock",  "table",       "record",
    "tin",        "tinNode",    "tinTriangle", "tinHull",     "tinMask",
    "lattice",    "grid",       "row",         "stack",       "symbolSet",
    "symbol",     "font",       "fontRecord",  "plot",        "plotRecord",
    "map"};

}  // namespace

void addDump(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("dump", "Print every record of a dataset as JSON Lines");
    auto path = std::make_shared<std::string>();
    auto options = std::make_shared<DumpOptions>();
    command->add_option("DATASET", *path, "The path that was imported to")->required();
    command->add_option("--class", options->classes, "Only this class; may be given repeatedly")
        ->type_name("NAME")
        ->allow_extra_args(false)
        ->check(CLI::IsMember(kClassNames).description(""), choices(kClassNames));
    addKind(*command, options->kind);
    command->callback([=, &console, &status] {
        finishChanges(workspaceOf(*path), console);
        status = reading(console, [&] { dump(*path, *options, console.output); });
    });
}

}  // namespace program
