#include "app/intake/export/export.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "app/intake/commands/reading.h"
#include "app/intake/export/layers.h"
#include "app/intake/export/mesh.h"
#include "app/intake/export/systems.h"
#include "app/intake/interrupts.h"
#include "app/intake/module.h"
#include "datasets/side_texts.h"
#include "formats/formats.h"

namespace program {

namespace {

struct Kind {
    const char* label;
    bool rasters;
    void (*layers)(Target& target, const datasets::Dataset& dataset);
};

// One line a kind that has layers.
constexpr Kind kKinds[] = {
    {"Coverage", false, exportCoverage},   {"TIN", false, exportSurface},
    {"Info Datafile", false, exportTable}, {"Grid", true, exportGrid},
    {"Lattice", true, exportLattice},      {"Stack", true, exportStack},
};

const Kind& kindOf(const datasets::Dataset& dataset) {
    for (const Kind& kind : kKinds) {
        if (dataset.kind == kind.label) return kind;
    }
    throw NotForThisKind(dataset.path + ": a " + dataset.kind +
                         " cannot be exported; intake dump prints all of it");
}

void refuseMisfits(const datasets::Dataset& dataset, const formats::Format& format) {
    if (!format.geometries && format.rasters && !kindOf(dataset).rasters) {
        throw NotForThisKind(dataset.path + ": a " + dataset.kind + " has no raster, and " +
                             std::string(format.title) + " holds nothing else");
    }
}

formats::Compression compressionOf(const std::string& name) {
    const auto found = std::ranges::find(kCompressions, name);
    return static_cast<formats::Compression>(found - std::begin(kCompressions));
}

const formats::Format& formatFor(const ExportOptions& options) {
    const formats::Format* format = options.format.empty() ? formats::formatOf(options.output)
                                                           : formats::formatNamed(options.format);
    if (format) return *format;
    std::string text = options.output + ": no format has this ending; there are";
    for (const formats::Format& each : formats::formats()) {
        (text += ' ') += each.endings.substr(0, each.endings.find(' '));
    }
    throw std::runtime_error(text + ", or --format says which");
}

// A name without the ending of a file is a folder with a file a layer.
bool isFolder(const ExportOptions& options, const formats::Format& format) {
    return format.folders && (!format.manyLayers || formats::formatOf(options.output) != &format);
}

void write(const ExportOptions& options, const datasets::Dataset& dataset,
           const formats::Format& format, const crs::ReferenceSystem& system, ExportReport& report,
           Console& console) {
    formats::Options how;
    how.replace = options.replace;
    how.folder = isFolder(options, format);
    how.asIs = options.asIs;
    how.wellKnownText = options.wellKnownText;
    how.ascii = options.ascii;
    how.rasters.compression = compressionOf(options.compression);
    how.rasters.cloud = options.cloud;
    how.toWgs84 = [](const crs::ReferenceSystem& from) { return systems().toWgs84(from); };
    if (format.meshes) {
        how.look = throwIfInterrupted;
        const formats::Mesh mesh = meshOf(dataset, system, options, report);
        throwIfInterrupted();
        return format.meshes->write(options.output, mesh, how);
    }
    const formats::WriterMaker& maker =
        format.maker ? *format.maker : loadModule<formats::WriterMaker>(std::string(format.module));
    const std::unique_ptr<formats::Writer> writer = maker.make(options.output, how);
    const Kind& kind = kindOf(dataset);
    if (!format.geometries && !format.rasters && !options.wellKnownText &&
        kind.layers != exportTable) {
        report.note("geometries are left out of " + options.output + "; --wkt adds them");
    }
    Target target(options, *writer, format.rasters, system, report, console);
    kind.layers(target, dataset);
    target.checkNames();
    throwIfInterrupted();
    writer->finish();
}

}  // namespace

int exportDataset(const ExportOptions& options, Console& console) {
    ExportReport report;
    const formats::Format& format = formatFor(options);
    const Interrupts interrupts;
    bool written = false;
    try {
        const int status = reading(console, [&] {
            const datasets::Dataset dataset = datasets::findDataset(options.dataset, options.kind);
            refuseMisfits(dataset, format);
            const crs::ReferenceSystem system = systemOf(dataset.path, options.system, report);
            write(options, dataset, format, system, report, console);
            written = true;
            if (!options.quiet) report.print(console);
            if (options.json) {
                report.printJson(console, options.dataset, options.output, format.name,
                                 system.description);
            }
        });
        // What a damaged file did not give was told, and the output has the rest.
        return written && (status != kDone || report.lost()) ? kComplained : status;
    } catch (const Interrupted& interrupted) {
        complain(console, "stopped; " + options.output + " was not made");
        return interrupted.exitStatus();
    }
}

}  // namespace program
