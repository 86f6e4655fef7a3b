#include "app/intake/workspace/list.h"

#include "app/intake/commands/commands.h"
#include "app/intake/commands/reading.h"
#include "app/intake/workspace/changes.h"
#include "app/intake/workspace/verify.h"

namespace program {

void addList(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("list", "Tell what a workspace holds");
    auto folder = std::make_shared<std::string>(".");
    auto asJson = std::make_shared<bool>(false);
    command->add_option("FOLDER", *folder, "The workspace; without it the current folder");
    command->add_flag("--json", *asJson, "Print one JSON object");
    command->callback([=, &console, &status] {
        finishChanges(*folder, console);
        status = reading(console, [&] { listWorkspace(*folder, *asJson, console); });
    });
}

void addCheckWorkspace(CLI::App& app, Console& console, int& status) {
    auto* command =
        app.add_subcommand("check-workspace", "Tell what is damaged or left over in a workspace");
    auto options = std::make_shared<VerifyOptions>();
    command->add_option("FOLDER", options->workspace,
                        "The workspace; without it the current folder");
    command->add_flag("--repair", options->repair,
                      "Take from the list what has no files, and remove files that nothing lists");
    command->add_flag("--json", options->json, "Print one JSON object");
    command->callback([=, &console, &status] {
        finishChanges(options->workspace, console);
        status = checkWorkspace(*options, console);
    });
}

}  // namespace program
