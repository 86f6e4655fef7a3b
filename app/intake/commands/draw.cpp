#include "app/intake/draw/draw.h"

#include "app/intake/commands/commands.h"
#include "app/intake/commands/reading.h"
#include "app/intake/workspace/changes.h"

namespace program {

void addDraw(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("draw", "Draw a picture of a dataset");
    auto path = std::make_shared<std::string>();
    auto picture = std::make_shared<std::string>();
    auto kind = std::make_shared<std::string>();
    command->add_option("DATASET", *path, "The path that was imported to")->required();
    command->add_option("OUT", *picture, "The picture: a name that ends in .svg or .png")
        ->required();
    addKind(*command, *kind);
    command->callback([=, &console, &status] {
        finishChanges(workspaceOf(*path), console);
        status = reading(console, [&] { draw(*path, *kind, *picture); });
    });
}

}  // namespace program
