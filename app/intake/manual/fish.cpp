#include "app/intake/manual/manual.h"

namespace program {

namespace {

std::string quoted(const std::string& text) { return "'" + marked(text, "'\\", "\\") + "'"; }

// The choices as one word, which fish takes apart again.
std::string listed(const std::vector<std::string>& choices) {
    std::string text;
    for (const std::string& choice : choices) {
        text += (text.empty() ? "" : " ") + marked(choice, " ", "\\");
    }
    return quoted(text);
}

std::string line(const std::string& condition, const Argument& argument) {
    std::string text = "complete -c intake -n " + quoted(condition);
    const bool choices = completed(argument) == Completed::choices;
    if (argument.positional) {
        return choices ? text + " -f -a " + listed(argument.choices) + "\n" : "";
    }
    for (const std::string& name : argument.names) {
        text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    if (!argument.value.empty()) text += choices ? " -x -a " + listed(argument.choices) : " -x";
    return text + " -d " + quoted(argument.text) + "\n";
}

}  // namespace

std::string fishCompletion(const std::vector<Usage>& usages) {
    std::string text = "# fish completion of intake\n";
    for (const Usage& usage : usages) {
        const std::string& command = usage.command;
        std::string condition = "__fish_use_subcommand";
        if (!command.empty()) {
            text += "complete -c intake -n __fish_use_subcommand -f -a " + command + " -d " +
                    quoted(usage.text) + "\n";
            condition = "__fish_seen_subcommand_from " + command;
        }
        for (const Argument& argument : usage.arguments) text += line(condition, argument);
    }
    return text;
}

}  // namespace program
