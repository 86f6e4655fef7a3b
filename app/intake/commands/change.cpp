#include "app/intake/commands/commands.h"
#include "app/intake/workspace/changes.h"

namespace program {

void addRemove(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("remove", "Remove datasets with their tables");
    auto paths = std::make_shared<std::vector<std::string>>();
    auto yes = std::make_shared<bool>(false);
    command->add_option("DATASET", *paths, "The paths that were imported to")->required();
    command->add_flag("--yes", *yes, "Do not ask; needed where nobody can be asked");
    command->callback([=, &console, &status] { status = removeDatasets(*paths, *yes, console); });
}

void addRename(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("rename", "Give a dataset and its tables another name");
    auto path = std::make_shared<std::string>();
    auto name = std::make_shared<std::string>();
    command->add_option("DATASET", *path, "The path that was imported to")->required();
    command->add_option("NEW", *name, "Its new name in the same workspace")->required();
    command->callback([=, &console, &status] { status = renameDataset(*path, *name, console); });
}

}  // namespace program
