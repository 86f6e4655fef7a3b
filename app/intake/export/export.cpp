#include "app/intake/export/export.h"

#include <iterator>
#include <stdexcept>

#include "app/intake/commands/reading.h"
#include "app/intake/export/layers.h"
#include "app/intake/export/systems.h"
#include "app/intake/interrupts.h"
#include "app/intake/module.h"
#include "datasets/side_texts.h"
#include "formats/formats.h"

namespace program {

namespace {

struct Kind {
    const char* label;
    void (*layers)(Target& target, const datasets::Dataset& dataset);
};

// One line a kind that has layers.
constexpr Kind kKinds[] = {
    {"Coverage", exportCoverage},
    {"TIN", exportSurface},
    {"Info Datafile", exportTable},
};

const Kind& kindOf(const datasets::Dataset& dataset) {
    for (const Kind& kind : kKinds) {
        if (dataset.kind == kind.label) return kind;
    }
    throw NotForThisKind(dataset.path + ": a " + dataset.kind +
                         " cannot be exported; intake dump prints all of it");
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
    how.toWgs84 = [](const crs::ReferenceSystem& from) { return systems().toWgs84(from); };
    const formats::WriterMaker& maker =
        format.maker ? *format.maker : loadModule<formats::WriterMaker>(std::string(format.module));
    const std::unique_ptr<formats::Writer> writer = maker.make(options.output, how);
    Target target(options, *writer, system, report, console);
    kindOf(dataset).layers(target, dataset);
    target.checkNames();
    throwIfInterrupted();
    writer->finish();
}

}  // namespace

int exportDataset(const ExportOptions& options, Console& console) {
    ExportReport report;
    const formats::Format& format = formatFor(options);
    const Interrupts interrupts;
    try {
        const int status = reading(console, [&] {
            const datasets::Dataset dataset = datasets::findDataset(options.dataset, options.kind);
            kindOf(dataset);
            const crs::ReferenceSystem system = systemOf(dataset.path, options.system, report);
            write(options, dataset, format, system, report, console);
            if (!options.quiet) report.print(console);
            if (options.json) {
                report.printJson(console, options.dataset, options.output, format.name,
                                 system.description);
            }
        });
        return status == kDone && report.lost() ? kComplained : status;
    } catch (const Interrupted& interrupted) {
        complain(console, "stopped; " + options.output + " was not made");
        return interrupted.exitStatus();
    }
}

}  // namespace program
