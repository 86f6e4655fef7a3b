#include <algorithm>

#include "app/intake/commands/guide.h"
#include "app/intake/manual/manual.h"

namespace program {

namespace {

// A text of ours in a page: hyphens that may be copied, no line that could be a request.
std::string roff(const std::string& text) {
    std::string result;
    for (const char character : text) {
        if (character == '\\') {
            result += "\\e";
        } else if (character == '\n' && result.ends_with('\n')) {
            result += ".PP\n";
        } else if (character == '-') {
            result += "\\-";
        } else if ((character == '.' || character == '\'') &&
                   (result.empty() || result.back() == '\n')) {
            result += std::string("\\&") + character;
        } else {
            result += character;
        }
    }
    return result;
}

std::string bold(const std::string& text) { return "\\fB" + roff(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + roff(text) + "\\fR"; }

std::string pageName(const Usage& usage) {
    return "intake" + (usage.command.empty() ? "" : "-" + usage.command);
}

std::string synopsis(const Usage& usage) {
    if (usage.command.empty()) {
        return bold("intake") + " [" + italic("OPTION") + "] " + italic("COMMAND") + " ...\n";
    }
    std::string text = bold("intake " + usage.command) + " [" + italic("OPTION") + "...]";
    for (const Argument& argument : usage.arguments) {
        if (!argument.positional) continue;
        const std::string name = italic(argument.names[0]) + (argument.repeatable ? "..." : "");
        text += argument.required ? " " + name : " [" + name + "]";
    }
    return text + "\n";
}

std::string nameOf(const Argument& argument) {
    if (argument.positional) return italic(argument.names[0]);
    std::string text;
    for (const std::string& name : argument.names) text += (text.empty() ? "" : ", ") + bold(name);
    return argument.value.empty() ? text : text + " " + italic(argument.value);
}

std::string argumentsOf(const Usage& usage, bool positional) {
    std::string text;
    for (const Argument& argument : usage.arguments) {
        if (argument.positional != positional) continue;
        text += ".TP\n" + nameOf(argument) + "\n" + roff(argument.text) + "\n";
        if (positional || argument.choices.empty()) continue;
        std::string choices;
        for (const std::string& choice : argument.choices) {
            choices += (choices.empty() ? "" : ", ") + choice;
        }
        text += ".br\nOne of: " + roff(choices) + ".\n";
    }
    return text;
}

// The pages of the others, the program's own first.
std::string others(const std::vector<Usage>& usages, std::size_t at) {
    std::string text;
    for (const Usage& usage : usages) {
        if (&usage == &usages[at]) continue;
        text += (text.empty() ? "" : ",\n") + bold(pageName(usage)) + "(1)";
    }
    return text + "\n";
}

}  // namespace

std::string manPage(const std::vector<Usage>& usages, std::size_t at) {
    const Usage& usage = usages[at];
    const bool whole = usage.command.empty();
    const std::string inShort = whole ? kInShort : usage.text;
    std::string title = pageName(usage);
    std::transform(title.begin(), title.end(), title.begin(), [](char letter) {
        return 'a' <= letter && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    });
    std::string page = ".TH " + title + " 1 \"\" \"intake " INTAKE_VERSION "\" \"User commands\"\n";
    const auto section = [&](const char* heading, const std::string& text) {
        if (!text.empty()) page += std::string(".SH ") + heading + "\n" + text;
    };
    section("NAME", roff(pageName(usage)) + " \\- " + roff(inShort) + "\n");
    section("SYNOPSIS", synopsis(usage));
    section("DESCRIPTION", roff(guideTo(usage.command)) + "\n");
    if (whole) {
        std::string commands;
        for (const Usage& each : usages) {
            if (each.command.empty()) continue;
            commands += ".TP\n" + bold(each.command) + "\n" + roff(each.text) + "\n";
        }
        section("COMMANDS", commands);
    }
    section("ARGUMENTS", argumentsOf(usage, true));
    section("OPTIONS", argumentsOf(usage, false));
    std::string examples;
    for (const Example& example : kExamples) {
        if (!whole && usage.command != example.command()) continue;
        examples += ".TP\n" + bold(example.line) + "\n" + roff(example.words) + "\n";
    }
    section("EXAMPLES", examples);
    std::string statuses;
    for (const StatusMeaning& each : kStatusMeanings) {
        statuses += ".TP\n" + bold(std::to_string(each.status)) + "\n" + roff(each.words) + "\n";
    }
    section("EXIT STATUS", statuses);
    if (whole) {
        section("ENVIRONMENT", ".TP\n" + bold("NO_COLOR") +
                                   "\nWhere it is set, messages have no colours.\n" + ".TP\n" +
                                   bold("TMPDIR") + "\nThe folder of temporary files.\n");
    }
    section("SEE ALSO", others(usages, at));
    return page;
}

}  // namespace program
