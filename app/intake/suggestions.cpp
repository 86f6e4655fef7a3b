#include "app/intake/suggestions.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "app/intake/commands/commands.h"

namespace program {

namespace {

// How many characters were left out, put in, changed or swapped with their neighbour.
std::size_t distance(const std::string& from, const std::string& to) {
    std::vector<std::size_t> beforeLast, last, row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0U);
    for (std::size_t i = 1; i <= from.size(); ++i) {
        beforeLast = std::exchange(last, row);
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t changed = last[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
            row[j] = std::min({last[j] + 1, row[j - 1] + 1, changed});
            if (i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1]) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
        }
    }
    return row.back();
}

// The nearest of the names, where one is near or begins with the word; or nothing.
std::string nearest(const std::string& word, const std::vector<std::string>& names) {
    // Nobody misspells a word of this length, and the table grows with it.
    constexpr std::size_t kLongest = 40;
    if (word.size() > kLongest) return "";
    const std::string lower = CLI::detail::to_lower(word);
    std::string found;
    std::size_t least = std::max<std::size_t>(1, word.size() / 3) + 1;
    for (const std::string& name : names) {
        const bool begun = word.size() > 1 && name.starts_with(lower);
        const std::size_t far = begun ? 1 : distance(lower, name);
        if (far >= least) continue;
        least = far;
        found = name;
    }
    return found;
}

std::vector<std::string> optionsOf(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        const auto& longNames = option->get_lnames();
        names.insert(names.end(), longNames.begin(), longNames.end());
    }
    return names;
}

}  // namespace

std::string tellNoCommand(const CLI::App& app, const std::string& word) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
    const std::string near = nearest(word, names);
    return "there is no command " + word + (near.empty() ? "" : "; did you mean " + near + "?");
}

std::string tellMisspeltOptions(const CLI::App& app, const std::vector<std::string>& arguments) {
    const CLI::App* command = &app;
    std::string told;
    for (const std::string& argument : arguments) {
        if (argument == "--") break;
        if (command == &app) {
            if (const CLI::App* named = commandNamed(app, argument)) command = named;
        }
        if (!argument.starts_with("--")) continue;
        const std::string word = argument.substr(2, argument.find('=') - 2);
        const std::vector<std::string> names = optionsOf(*command);
        if (std::find(names.begin(), names.end(), word) != names.end()) continue;
        const std::string near = nearest(word, names);
        if (near.empty()) continue;
        told += told.empty() ? "" : "; ";
        told += "--" + word + ": did you mean --" + near + "?";
    }
    return told;
}

}  // namespace program
