#include "app/intake/command_line.h"

#include <CLI/CLI.hpp>
#include <new>

#include "app/intake/commands/commands.h"
#include "app/intake/commands/guide.h"
#include "app/intake/suggestions.h"
#include "app/intake/version.h"

namespace program {

namespace {

// In the order of the help.
constexpr void (*kCommands[])(CLI::App&, Console&, int&) = {
    addImport, addCheck,  addList,    addShow,  addDump,   addDraw, addCheckWorkspace, addRemove,
    addRename, addExport, addConvert, addBatch, addReport, addPack, addUnpack,         addHelp,
};

}  // namespace

void addCommands(CLI::App& app, Console& console, int& status) {
    app.description(helpOpening());
    app.set_version_flag("--version", versionText, "Tell the version, its build and its modules");
    app.require_subcommand(1);
    for (const auto& add : kCommands) add(app, console, status);
}

int run(const std::vector<std::string>& arguments, Console& console) {
    int status = kWrongUsage;
    CLI::App app("", "intake");
    addCommands(app, console, status);
    const auto wrong = [&](const std::string& what) {
        complain(console, what);
        console.errors << "Run with --help for more information.\n";
        return kWrongUsage;
    };
    try {
        if (!arguments.empty() && !arguments[0].starts_with('-') &&
            !commandNamed(app, arguments[0])) {
            return wrong(tellNoCommand(app, arguments[0]));
        }
        // The parser takes its arguments from the back.
        std::vector<std::string> words(arguments.rbegin(), arguments.rend());
        for (std::string& word : words) {
            if (word.starts_with("-::")) word.replace(0, 1, "/dev/stdin");
        }
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) {
            app.exit(error, console.output, console.errors);
            return kDone;
        }
        const std::string meant = tellMisspeltOptions(app, arguments);
        return wrong(error.what() + (meant.empty() ? "" : "; " + meant));
    } catch (const std::bad_alloc&) {
        complain(console, "out of memory");
        return kEnded;
    } catch (const std::exception& error) {
        complain(console, error.what());
        return kEnded;
    }
    return status;
}

}  // namespace program
