#include "app/intake/manual/manual.h"

namespace program {

namespace {

// Words for _intake_words, each quoted.
std::string words(const std::vector<std::string>& texts) { return joined(texts, " '", "'"); }

}  // namespace

std::string bashCompletion(const std::vector<Usage>& usages) {
    std::string commands, options, values, positionals;
    for (const Usage& usage : usages) {
        const std::string& command = usage.command;
        if (!command.empty()) commands += " '" + command + "'";
        std::vector<std::string> names;
        bool first = true;
        for (const Argument& argument : usage.arguments) {
            const bool choices = completed(argument) == Completed::choices;
            if (argument.positional) {
                if (first && choices) {
                    positionals += "        " + command + ") _intake_words" +
                                   words(argument.choices) + " ;;\n";
                }
                first = false;
                continue;
            }
            names.insert(names.end(), argument.names.begin(), argument.names.end());
            if (argument.value.empty()) continue;
            for (const std::string& name : argument.names) {
                values += "        '" + command + " " + name + "') " +
                          (choices ? "_intake_words" + words(argument.choices) + "; " : "") +
                          "return ;;\n";
            }
        }
        options += "            '" + command + "') _intake_words" + words(names) + " ;;\n";
    }
    return R"bash(# bash completion of intake
_intake_words() {
    local word
    for word; do
        [[ $word != "$current"* ]] || COMPREPLY+=("$(printf %q "$word")")
    done
}

_intake() {
    local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command=
    COMPREPLY=()
    ((COMP_CWORD == 1)) || command=${COMP_WORDS[1]}
    # --option=value comes as three words.
    if [[ $current == = ]]; then
        current=
    elif [[ $before == = ]]; then
        before=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    case "$command $before" in
)bash" + values +
           R"bash(    esac
    if [[ $current == -* ]]; then
        case $command in
)bash" + options +
           R"bash(        esac
        return
    fi
    case $command in
        '') _intake_words)bash" +
           commands + " ;;\n" + positionals +
           R"bash(        *)
            compopt -o filenames 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            ;;
    esac
}

complete -F _intake intake
)bash";
}

}  // namespace program
