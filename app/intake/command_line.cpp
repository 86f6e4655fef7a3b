#include "app/intake/command_line.h"

#include <CLI/CLI.hpp>
#include <new>

#include "app/intake/commands/commands.h"
#include "app/intake/suggestions.h"
#include "app/intake/version.h"

namespace program {

namespace {

constexpr char kExamples[] =
    R"(Examples:
  intake import roads.e00 roads             rebuild the dataset of an interchange file
  intake import --json roads.e00 roads      ... and tell the outcome as one JSON object
  intake import roads.zip roads             ... out of an archive or a compressed file
  intake check roads.e00                    what a file is, and whether it is whole
  intake import --replace roads.e00 roads   ... in the place of the one that is there
  intake list                               what the workspace holds
  intake show roads                         what it is, and what it holds
  intake dump roads                         print every record, one JSON object a line
  intake dump roads --class arc             ... of one class only
  intake draw roads roads.svg               a picture of it, as SVG or PNG
  intake convert roads.e00 roads.gpkg       from the file to a format that others open
  intake export roads roads.gpkg            the same of a dataset that was imported
  intake rename roads streets               another name for it and its tables
  intake remove streets                     away with it and its tables
  intake pack roads.e00 small.e00           the same file in compressed form
  intake unpack small.e00 plain.e00         ... and in plain form again

Rebuilds geographic datasets from an 80-column interchange text file.)";

// In the order of the help.
constexpr void (*kCommands[])(CLI::App&, Console&, int&) = {
    addImport, addCheck,  addList,    addShow, addDump,   addDraw, addRemove,
    addRename, addExport, addConvert, addPack, addUnpack, addHelp,
};

}  // namespace

void addCommands(CLI::App& app, Console& console, int& status) {
    app.description(kExamples);
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
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
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
