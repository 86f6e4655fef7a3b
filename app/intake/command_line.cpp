#include "app/intake/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <new>

#include "app/intake/draw/draw.h"
#include "app/intake/dump/dump.h"
#include "app/intake/import.h"
#include "app/intake/messages.h"
#include "app/intake/pack.h"
#include "app/intake/show/show.h"
#include "app/intake/show/within.h"
#include "datasets/workspace.h"

namespace program {

namespace {

constexpr char kExamples[] =
    R"(Examples:
  intake import roads.e00 roads             rebuild the dataset of an interchange file
  intake import --json roads.e00 roads      ... and tell the outcome as one JSON object
  intake show roads                         what it is, and what it holds
  intake dump roads                         print every record, one JSON object a line
  intake dump roads --class arc             ... of one class only
  intake draw roads roads.svg               a picture of it, as SVG or PNG
  intake pack roads.e00 small.e00           the same file in compressed form
  intake unpack small.e00 plain.e00         ... and in plain form again

Rebuilds geographic datasets from an 80-column interchange text file.)";

// The labels of docs/dump-format.md.
const std::vector<std::string> kKindLabels = {
    "Coverage",     "Info Datafile", "Text File",    "Plot File",      "TIN",
    "Lattice",      "Font File",     "Lineset File", "Markerset File", "Shadeset File",
    "Textset File", "Map",           "Grid",         "Stack"};

// The classes of docs/dump-format.md.
const std::vector<std::string> kClassNames = {
    "dataset",    "arc",        "label",       "centroid",    "polygon",
    "tolerance",  "annotation", "link",        "addressText", "addressIntegers",
    "regionPair", "region",     "log",         "projection",  "metadata",
    "textFile",   "index",      "indexBlock",  "table",       "record",
    "tin",        "tinNode",    "tinTriangle", "tinHull",     "tinMask",
    "lattice",    "grid",       "row",         "stack",       "symbolSet",
    "symbol",     "font",       "fontRecord",  "plot",        "plotRecord",
    "map"};

void addKind(CLI::App& command, std::string& kind) {
    command.add_option("--kind", kind, "What to take DATASET for, where its bytes leave it open")
        ->type_name("LABEL")
        ->transform(CLI::IsMember(kKindLabels, CLI::ignore_case).description(""));
}

void addImport(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("import", "Rebuild the dataset of an interchange file");
    auto options = std::make_shared<ImportOptions>();
    command->add_option("FILE", options->file, "The file, or its first volume")->required();
    command->add_option("DATASET", options->dataset, "The path of the dataset to make")->required();
    command->add_flag("--force", options->force, "Go on where DATASET exists already");
    command->add_flag("--quiet", options->quiet, "Tell errors only");
    command->add_flag("--json", options->json, "Print the outcome as one JSON object");
    command->callback([=, &console, &status] { status = importFile(*options, console); });
}

// Runs a command that reads a dataset. What it wrote has to reach its reader, and a stored file
// that is damaged is told behind what could be read of it.
template <class Work>
int reading(Console& console, Work work) {
    Listening listening(console);
    try {
        work();
    } catch (const datasets::NoDataset&) {
        // A file that cannot be read says why none was found.
        if (listening.endWell()) throw;
        return kEnded;
    }
    console.output.flush();
    if (!console.output) throw std::runtime_error("could not write the output");
    return listening.endWell() ? kDone : kEnded;
}

void addShow(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("show", "Tell what a dataset is and what it holds");
    auto path = std::make_shared<std::string>();
    auto kind = std::make_shared<std::string>();
    auto asJson = std::make_shared<bool>(false);
    command->add_option("DATASET", *path, "The path that was imported to")->required();
    auto within = std::make_shared<std::string>();
    command->add_flag("--json", *asJson, "Print one JSON object");
    command->add_option("--within", *within, "List the features of a coverage in a rectangle")
        ->type_name("XMIN,YMIN,XMAX,YMAX");
    addKind(*command, *kind);
    command->callback([=, &console, &status] {
        status = reading(console, [&] {
            const Description description =
                within->empty() ? describe(*path, *kind) : describeWithin(*path, *kind, *within);
            if (*asJson) {
                console.output << description.dump() << '\n';
            } else {
                print(description, console.output);
            }
        });
    });
}

void addDump(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("dump", "Print every record of a dataset as JSON Lines");
    auto path = std::make_shared<std::string>();
    auto options = std::make_shared<DumpOptions>();
    command->add_option("DATASET", *path, "The path that was imported to")->required();
    command->add_option("--class", options->classes, "Only this class; may be given repeatedly")
        ->type_name("NAME")
        ->allow_extra_args(false)
        ->check(CLI::IsMember(kClassNames).description(""));
    addKind(*command, options->kind);
    command->callback([=, &console, &status] {
        status = reading(console, [&] { dump(*path, *options, console.output); });
    });
}

void addDraw(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("draw", "Draw a picture of a dataset");
    auto path = std::make_shared<std::string>();
    auto picture = std::make_shared<std::string>();
    auto kind = std::make_shared<std::string>();
    command->add_option("DATASET", *path, "The path that was imported to")->required();
    command->add_option("OUT", *picture, "The picture: a name that ends in .svg or .png")
        ->required();
    addKind(*command, *kind);
    command->callback([=, &console, &status] {
        status = reading(console, [&] { draw(*path, *kind, *picture); });
    });
}

void addPack(CLI::App& app, Console& console, int& status, bool compressed) {
    auto* command = compressed ? app.add_subcommand("pack", "Write a file in compressed form")
                               : app.add_subcommand("unpack", "Write a file in plain form");
    auto options = std::make_shared<PackOptions>();
    command->add_option("FILE", options->input, "The file in any form, or its first volume")
        ->required();
    command->add_option("OUT", options->output, "The file to make, or its first volume")
        ->required();
    if (compressed) {
        options->level = 2;
        command->add_option("--level", options->level, "1: blanks only; 2: numbers too (default)")
            ->check(CLI::Range(1, 2));
    }
    command
        ->add_option("--lines-per-volume", options->linesPerVolume,
                     "Split into volumes of so many lines; OUT then ends in two digits")
        ->type_name("N")
        ->check(CLI::Range(2, 1000000000));
    command->callback([=, &console, &status] { status = pack(*options, console); });
}

}  // namespace

int run(const std::vector<std::string>& arguments, Console& console) {
    int status = kWrongUsage;
    CLI::App app(kExamples, "intake");
    app.set_version_flag("--version", "intake " INTAKE_VERSION);
    app.require_subcommand(1);
    addImport(app, console, status);
    addShow(app, console, status);
    addDump(app, console, status);
    addDraw(app, console, status);
    addPack(app, console, status, true);
    addPack(app, console, status, false);
    try {
        // The parser takes its arguments from the back.
        app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
    } catch (const CLI::ParseError& error) {
        const bool asked = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success);
        app.exit(error, console.output, console.errors);
        return asked ? kDone : kWrongUsage;
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
