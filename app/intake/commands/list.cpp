#include "app/intake/workspace/list.h"

#include "app/intake/commands/commands.h"
#include "app/intake/commands/reading.h"
#include "app/intake/workspace/changes.h"

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

}  // namespace program
