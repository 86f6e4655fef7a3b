#include "app/intake/manual/manual.h"

namespace program {

namespace {

// A text within single quotes, in which these characters mean something to _arguments.
std::string quoted(const std::string& text) {
    std::string result;
    for (const char character : marked(text, "[]:\\", "\\")) {
        result += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return result;
}

// ":NAME:what it is completed with".
std::string completion(const Argument& argument, const std::string& name) {
    const std::string lead = ":" + quoted(name) + ":";
    switch (completed(argument)) {
        case Completed::files:
            return lead + "_files";
        case Completed::nothing:
            return lead + " ";
        case Completed::choices:
            break;
    }
    std::string choices;
    for (const std::string& choice : argument.choices) {
        choices += (choices.empty() ? "" : " ") + marked(choice, " ", "\\");
    }
    return lead + "(" + choices + ")";
}

std::string specifications(const Usage& usage) {
    std::string text;
    int place = 0;
    for (const Argument& argument : usage.arguments) {
        if (argument.positional) {
            const std::string at = argument.repeatable ? "*" : std::to_string(++place);
            text += " \\\n                '" + at + completion(argument, argument.names[0]) + "'";
            continue;
        }
        for (const std::string& name : argument.names) {
            const bool flag = argument.value.empty();
            text += " \\\n                '" + std::string(argument.repeatable ? "*" : "") + name +
                    (flag ? "" : "=") + "[" + quoted(argument.text) + "]" +
                    (flag ? "" : completion(argument, argument.value)) + "'";
        }
    }
    return text;
}

}  // namespace

std::string zshCompletion(const std::vector<Usage>& usages) {
    std::string commands, cases;
    for (const Usage& usage : usages) {
        if (usage.command.empty()) continue;
        commands += "        '" + usage.command + ":" + quoted(usage.text) + "'\n";
        cases += "            " + usage.command + ") _arguments" + specifications(usage) + " ;;\n";
    }
    return "#compdef intake\n_intake() {\n    local curcontext=\"$curcontext\" state line\n"
           "    local -a commands=(\n" +
           commands + "    )\n    _arguments -C" + specifications(usages[0]) +
           R"( \
                '1:command:->command' '*::argument:->arguments'
    case $state in
        command) _describe command commands ;;
        arguments) case $words[1] in
)" + cases +
           R"(            esac ;;
    esac
}
_intake "$@"
)";
}

}  // namespace program
