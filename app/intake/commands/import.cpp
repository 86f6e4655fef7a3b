#include "app/intake/import.h"

#include "app/intake/commands/commands.h"

namespace program {

void addImport(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("import", "Rebuild the dataset of an interchange file");
    auto options = std::make_shared<ImportOptions>();
    addSource(*command, options->source);
    command->add_option("DATASET", options->dataset, "The path of the dataset to make")->required();
    command->add_flag("--force", options->force, "Go on where DATASET exists already");
    command->add_flag("--replace", options->replace,
                      "Put the new dataset in the place of DATASET, once it is whole; with --force "
                      "also one that errors were told of");
    command->add_flag("--sync", options->sync,
                      "Bring each file to the disk, in an order that makes what was imported last "
                      "through a power cut; INTAKE_SYNC=1 in the environment does so for every "
                      "command");
    command->add_flag("--quiet", options->quiet, "Tell errors only");
    command->add_flag("--json", options->json, "Print the outcome as one JSON object");
    command
        ->add_option_function<std::string>(
            "--progress", [=](const std::string&) { options->events = true; },
            "json: tell progress and messages as JSON Lines, for a program that shows them")
        ->type_name("FORM")
        ->check(CLI::IsMember({"json"}).description(""), "json");
    command->callback([=, &console, &status] { status = importFile(*options, console); });
}

}  // namespace program
