#include "app/intake/commands/commands.h"
#include "app/intake/suggestions.h"

namespace program {

const CLI::App* commandNamed(const CLI::App& app, const std::string& name) {
    for (const CLI::App* command : app.get_subcommands({})) {
        if (command->get_name() == name) return command;
    }
    return nullptr;
}

void addHelp(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("help", "Tell how a command is used");
    auto name = std::make_shared<std::string>();
    std::vector<std::string> names;
    for (const CLI::App* each : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(each->get_name());
    }
    command->add_option("COMMAND", *name, "The command; without one, all of them are told")
        ->check(CLI::Validator([](std::string&) { return std::string(); }, ""), choices(names));
    command->callback([=, &app, &console, &status] {
        if (name->empty()) {
            console.output << app.get_formatter()->make_help(&app, "intake", CLI::AppFormatMode());
        } else if (const CLI::App* named = commandNamed(app, *name)) {
            console.output << app.get_formatter()->make_help(named, "intake " + *name,
                                                             CLI::AppFormatMode());
        } else {
            complain(console, tellNoCommand(app, *name));
            return;
        }
        status = kDone;
    });
}

}  // namespace program
