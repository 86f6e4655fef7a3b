#include "app/intake/draw/draw.h"

#include "app/intake/commands/commands.h"
#include "app/intake/commands/reading.h"
#include "app/intake/interrupts.h"
#include "app/intake/workspace/changes.h"

namespace program {

void addDraw(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("draw", "Draw a picture of a dataset");
    auto options = std::make_shared<DrawOptions>();
    command->add_option("DATASET", options->dataset, "The path that was imported to")->required();
    command->add_option("OUT", options->picture, "The picture: a name that ends in .svg or .png")
        ->required();
    command
        ->add_option("--colour-by", options->colourBy,
                     "Colour the polygons of a coverage by an item of their table")
        ->type_name("ITEM");
    addKind(*command, options->kind);
    command->callback([=, &console, &status] {
        finishChanges(workspaceOf(options->dataset), console);
        const Interrupts interrupts;
        try {
            status = reading(console, [&] { draw(*options); });
        } catch (const Interrupted& interrupted) {
            complain(console, "stopped; " + options->picture + " was not made");
            status = interrupted.exitStatus();
        }
    });
}

}  // namespace program
