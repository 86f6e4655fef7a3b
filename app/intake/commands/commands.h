// The commands of intake: each adds itself to the command line, and sets the exit status when it
// has run.
#ifndef APP_INTAKE_COMMANDS_COMMANDS_H
#define APP_INTAKE_COMMANDS_COMMANDS_H

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <vector>

#include "app/intake/console.h"
#include "app/intake/source.h"

namespace program {

void addImport(CLI::App& app, Console& console, int& status);
void addCheck(CLI::App& app, Console& console, int& status);
void addShow(CLI::App& app, Console& console, int& status);
void addDump(CLI::App& app, Console& console, int& status);
void addDraw(CLI::App& app, Console& console, int& status);
void addList(CLI::App& app, Console& console, int& status);
void addCheckWorkspace(CLI::App& app, Console& console, int& status);
void addRemove(CLI::App& app, Console& console, int& status);
void addRename(CLI::App& app, Console& console, int& status);
void addExport(CLI::App& app, Console& console, int& status);
void addConvert(CLI::App& app, Console& console, int& status);
void addBatch(CLI::App& app, Console& console, int& status);
void addReport(CLI::App& app, Console& console, int& status);
void addPack(CLI::App& app, Console& console, int& status);
void addUnpack(CLI::App& app, Console& console, int& status);
void addHelp(CLI::App& app, Console& console, int& status);

// Adds the description and all commands, in the order of the help.
void addCommands(CLI::App& app, Console& console, int& status);

// The name of a validator whose values are a fixed set, by which the completion of shells has them.
inline std::string choices(const std::vector<std::string>& names) {
    return CLI::detail::join(names, "|");
}

// The command of a name, or null.
const CLI::App* commandNamed(const CLI::App& app, const std::string& name);

// FILE and --max-size of a command that reads an interchange file.
void addSource(CLI::App& command, SourceOptions& source);
void addMaxSize(CLI::App& command, uint64_t& mostBytes);

// The option --kind of a command that reads a dataset.
void addKind(CLI::App& command, std::string& kind);

}  // namespace program

#endif
