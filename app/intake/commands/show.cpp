#include "app/intake/show/show.h"

#include "app/intake/commands/commands.h"
#include "app/intake/commands/reading.h"
#include "app/intake/show/within.h"
#include "app/intake/workspace/changes.h"

namespace program {

void addShow(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("show", "Tell what a dataset is and what it holds");
    auto path = std::make_shared<std::string>();
    auto kind = std::make_shared<std::string>();
    auto asJson = std::make_shared<bool>(false);
    command->add_option("DATASET", *path, "The path that was imported to")->required();
    auto within = std::make_shared<std::string>();
    command->add_flag("--json", *asJson, "Print one JSON object");
    command->add_option("--within", *within, "List the features of a coverage in a rectangle")
        ->type_name("XMIN,YMIN,XMAX,YMAX");
    addKind(*command, *kind);
    command->callback([=, &console, &status] {
        finishChanges(workspaceOf(*path), console);
        status = reading(console, [&] {
            const Description description =
                within->empty() ? describe(*path, *kind) : describeWithin(*path, *kind, *within);
            if (*asJson) {
                console.output << description.dump() << '\n';
            } else {
                print(description, console.output);
            }
        });
    });
}

}  // namespace program
