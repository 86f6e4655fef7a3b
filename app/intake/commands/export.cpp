#include "app/intake/export/export.h"

#include <charconv>

#include "app/intake/commands/commands.h"
#include "app/intake/export/convert.h"
#include "app/intake/workspace/changes.h"
#include "formats/formats.h"

namespace program {

namespace {

datasets::Box boxOf(const std::string& text) {
    datasets::Box box{};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (std::size_t side = 0; side < box.size(); ++side) {
        const auto [behind, error] = std::from_chars(at, end, box[side]);
        if (error != std::errc() || (side < 3 ? behind == end || *behind != ',' : behind != end)) {
            throw CLI::ValidationError("--where-within", "needs four numbers: XMIN,YMIN,XMAX,YMAX");
        }
        at = behind + 1;
    }
    return box;
}

void addExportOptions(CLI::App& command, const std::shared_ptr<ExportOptions>& options) {
    std::vector<std::string> names;
    for (const formats::Format& format : formats::formats()) names.emplace_back(format.name);
    command
        .add_option("--format", options->format, "The format, where OUT does not end in its name")
        ->type_name("NAME")
        ->check(CLI::IsMember(names).description(""), choices(names));
    command.add_option("--layer", options->layers, "Only this layer; may be given repeatedly")
        ->type_name("NAME")
        ->allow_extra_args(false);
    command
        .add_option_function<std::string>(
            "--where-within", [options](const std::string& text) { options->within = boxOf(text); },
            "Only features that meet a rectangle")
        ->type_name("XMIN,YMIN,XMAX,YMAX");
    command.add_option("--crs", options->system, "The reference system, where it is not known")
        ->type_name("EPSG:N");
    command
        .add_option("--encoding", options->encoding, "Of texts that are not UTF-8 (windows-1252)")
        ->type_name("NAME");
    command.add_flag_callback(
        "--no-redefined", [options] { options->redefined = false; },
        "Leave out columns that name bytes of other columns once more");
    command.add_flag("--as-is", options->asIs, "Coordinates into GeoJSON without turning them");
    command.add_flag("--wkt", options->wellKnownText, "Geometries into CSV, as well-known text");
    command.add_flag("--force", options->replace, "Replace OUT");
    command.add_flag("--quiet", options->quiet, "Tell errors only");
    command.add_flag("--json", options->json, "Print the report as one JSON object");
}

constexpr char kOutput[] =
    "The file to make, which ends in .gpkg, .geojson, .geojsonl or .csv; or a folder for CSV";

}  // namespace

void addExport(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("export", "Write a dataset in a format that others open");
    auto options = std::make_shared<ExportOptions>();
    command->add_option("DATASET", options->dataset, "The path that was imported to")->required();
    command->add_option("OUT", options->output, kOutput)->required();
    addExportOptions(*command, options);
    addKind(*command, options->kind);
    command->callback([=, &console, &status] {
        finishChanges(workspaceOf(options->dataset), console);
        status = exportDataset(*options, console);
    });
}

void addConvert(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("convert", "Go from an interchange file to such a format");
    auto options = std::make_shared<ConvertOptions>();
    // Shares its life with that of the whole.
    const std::shared_ptr<ExportOptions> output(options, &options->output);
    addSource(*command, options->source);
    command->add_option("OUT", output->output, kOutput)->required();
    command->add_flag("--partial", options->partial,
                      "Also what could be read of a file that is damaged");
    addExportOptions(*command, output);
    command->callback([=, &console, &status] { status = convertFile(*options, console); });
}

}  // namespace program
