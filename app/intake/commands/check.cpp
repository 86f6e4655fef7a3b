#include "app/intake/check/check.h"

#include "app/intake/commands/commands.h"

namespace program {

void addCheck(CLI::App& app, Console& console, int& status) {
    auto* command =
        app.add_subcommand("check", "Tell what a file is and whether it is whole; makes nothing");
    auto options = std::make_shared<CheckOptions>();
    options->mostBytes = SourceOptions().mostBytes;
    command
        ->add_option("FILE", options->files,
                     "A file or its first volume, in any of the ways that import takes")
        ->required();
    command->add_flag("--json", options->json, "Print one JSON object a line for each file");
    addMaxSize(*command, options->mostBytes);
    command->callback([=, &console, &status] { status = check(*options, console); });
}

}  // namespace program
