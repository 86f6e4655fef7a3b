// What a misspelt word of the command line may have meant.
#ifndef APP_INTAKE_SUGGESTIONS_H
#define APP_INTAKE_SUGGESTIONS_H

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace program {

// What to say of a word that should be a command and is none.
std::string tellNoCommand(const CLI::App& app, const std::string& word);

// What to say of options of a command line that are none of its command, each with the option that
// it may have meant; empty where there are none, or nothing is near them.
std::string tellMisspeltOptions(const CLI::App& app, const std::vector<std::string>& arguments);

}  // namespace program

#endif
