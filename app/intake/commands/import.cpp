#include "app/intake/import.h"

#include "app/intake/commands/commands.h"

namespace program {

void addImport(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("import", "Rebuild the dataset of an interchange file");
    auto options = std::make_shared<ImportOptions>();
    command->add_option("FILE", options->file, "The file, or its first volume")->required();
    command->add_option("DATASET", options->dataset, "The path of the dataset to make")->required();
    command->add_flag("--force", options->force, "Go on where DATASET exists already");
    command->add_flag("--quiet", options->quiet, "Tell errors only");
    command->add_flag("--json", options->json, "Print the outcome as one JSON object");
    command->callback([=, &console, &status] { status = importFile(*options, console); });
}

}  // namespace program
