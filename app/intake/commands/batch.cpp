#include "app/intake/batch/batch.h"

#include <algorithm>
#include <charconv>

#include "app/intake/commands/commands.h"
#include "formats/formats.h"

namespace program {

namespace {

// A format is meant by its name or by an ending of its files.
const formats::Format* formatMeant(const std::string& text) {
    const formats::Format* const named = formats::formatNamed(text);
    return named ? named : formats::formatOf("any." + text);
}

std::string firstEnding(const formats::Format& format) {
    return std::string(format.endings.substr(1, format.endings.find(' ') - 1));
}

void addFormat(BatchOptions& options, const std::string& text) {
    const formats::Format* const format = formatMeant(text);
    if (!format) throw CLI::ValidationError("--to", "there is no format " + text);
    const std::string name(format->name);
    const auto known = std::find(options.formats.begin(), options.formats.end(), name);
    if (known == options.formats.end()) options.formats.push_back(name);
}

void setShard(BatchOptions& options, const std::string& text) {
    const char* const end = text.data() + text.size();
    const auto [slash, first] = std::from_chars(text.data(), end, options.shard);
    const bool parted = first == std::errc() && slash != end && *slash == '/';
    const auto last = std::from_chars(parted ? slash + 1 : end, end, options.shards);
    if (!parted || last.ec != std::errc() || last.ptr != end || options.shard >= options.shards) {
        throw CLI::ValidationError("--shard", "needs I/N with I from 0 to N - 1");
    }
}

}  // namespace

void addBatch(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("batch", "Take many files in one go");
    auto options = std::make_shared<BatchOptions>();
    command
        ->add_option("INPUT", options->inputs,
                     "A file, a folder, or @LIST: a file of paths, - for standard input")
        ->required();
    command->add_option("--out", options->folder, "The folder of the outputs")
        ->type_name("FOLDER")
        ->required();
    std::vector<std::string> endings;
    for (const formats::Format& format : formats::formats()) endings.push_back(firstEnding(format));
    command
        ->add_option_function<std::vector<std::string>>(
            "--to",
            [options](const std::vector<std::string>& names) {
                for (const std::string& name : names) addFormat(*options, name);
            },
            "Export to this format; may be given repeatedly. Without it the datasets are kept")
        ->type_name("FORMAT")
        ->allow_extra_args(false)
        ->check(CLI::Validator([](std::string&) { return std::string(); }, "", choices(endings)));
    command
        ->add_option("--include", options->include,
                     "Files of folders whose names are like this (*.e00, *.e00.gz, *.zip, ...); "
                     "may be given repeatedly")
        ->type_name("GLOB")
        ->allow_extra_args(false);
    command->add_option("--jobs", options->jobs, "So many workers (as many as processors)")
        ->type_name("N")
        ->check(CLI::Range(1, 4096).description(""));
    command
        ->add_option("--timeout", options->timeout,
                     "Give a file up after so many seconds without progress (600)")
        ->type_name("SECONDS")
        ->check(CLI::PositiveNumber.description(""));
    command
        ->add_option("--memory", options->memory,
                     "The most memory that a file may take (1G); K, M, G, T")
        ->type_name("SIZE")
        ->transform(CLI::AsSizeValue(false).description(""));
    addMaxSize(*command, options->mostBytes);
    command->add_option("--report", options->report, "The report (FOLDER/report.jsonl)")
        ->type_name("FILE");
    command->add_flag("--resume", options->resume,
                      "Go on with the report that is there: leave out what came out whole");
    command->add_flag("--retry", options->retry, "Take what the report has as failed or partial");
    command->add_flag("--force", options->force, "Begin a new report, and replace what is there");
    command->add_flag("--gather", options->gather,
                      "All GeoPackages in one, with a column that names the source");
    command->add_flag("--thumbnails", options->thumbnails, "Make a small picture of each dataset");
    command
        ->add_option_function<std::string>(
            "--shard", [options](const std::string& text) { setShard(*options, text); },
            "The I-th of N parts of the inputs, I from 0")
        ->type_name("I/N");
    command->add_option("--crs", options->system, "The reference system, where it is not known")
        ->type_name("EPSG:N");
    command
        ->add_option("--encoding", options->encoding, "Of texts that are not UTF-8 (windows-1252)")
        ->type_name("NAME");
    command->add_flag("--quiet", options->quiet, "Tell failures only");
    command->callback([=, &console, &status] { status = runBatch(*options, console); });
}

}  // namespace program
