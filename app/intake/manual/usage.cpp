#include "app/intake/manual/usage.h"

#include <iostream>

#include "app/intake/commands/commands.h"

namespace program {

namespace {

// Of the first validator that names them (choices() in commands.h).
std::vector<std::string> choicesOf(CLI::Option& option) {
    try {
        const std::string& names = option.get_validator(0)->get_name();
        return names.empty() ? std::vector<std::string>() : CLI::detail::split(names, '|');
    } catch (const CLI::OptionNotFound&) {
        return {};
    }
}

Argument argumentOf(CLI::Option& option) {
    Argument argument;
    argument.positional = option.get_positional();
    if (argument.positional) {
        argument.names = {option.get_name()};
    } else {
        for (const std::string& name : option.get_snames()) argument.names.push_back("-" + name);
        for (const std::string& name : option.get_lnames()) argument.names.push_back("--" + name);
        if (option.get_items_expected_max() > 0) argument.value = option.get_type_name();
    }
    argument.required = option.get_required();
    argument.repeatable = option.get_expected_max() > 1;
    argument.text = option.get_description();
    argument.choices = choicesOf(option);
    return argument;
}

Usage usageOf(CLI::App& command) {
    Usage usage{command.get_parent() ? command.get_name() : "", command.get_description(), {}};
    for (CLI::Option* option : command.get_options([](const CLI::Option*) { return true; })) {
        usage.arguments.push_back(argumentOf(*option));
    }
    return usage;
}

}  // namespace

std::vector<Usage> usageOfAll() {
    Console console{std::cout, std::cerr};
    int status = 0;
    CLI::App app("", "intake");
    addCommands(app, console, status);
    std::vector<Usage> usages = {usageOf(app)};
    for (CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        usages.push_back(usageOf(*command));
    }
    return usages;
}

}  // namespace program
