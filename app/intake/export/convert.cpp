#include "app/intake/export/convert.h"

#include <filesystem>

#include "app/intake/import.h"
#include "app/intake/interrupts.h"
#include "app/intake/temporary_folder.h"

namespace program {

std::string datasetNameFor(const std::string& file) {
    const std::size_t archive = file.rfind("::");
    const std::string inside = archive == std::string::npos ? file : file.substr(archive + 2);
    std::string name = std::filesystem::path(inside).filename().string();
    name = name.substr(0, name.find('.', 1));
    return name.empty() || name == "-" ? "dataset" : name;
}

int convertFile(const ConvertOptions& options, Console& console) {
    const Interrupts interrupts;
    const TemporaryFolder workspace;
    ImportOptions import;
    import.source = options.source;
    import.dataset = workspace.path() + '/' + datasetNameFor(options.source.file);
    import.isTemporary = true;
    import.quiet = options.output.quiet;
    const int imported = importFile(import, console);
    if (interruptedBy() != 0) return Interrupted(interruptedBy()).exitStatus();
    if (imported == kWrongUsage) return imported;
    if (imported == kEnded && !options.partial) {
        complain(console, options.output.output +
                              " was not made, for the file could not be read to its end; with "
                              "--partial it gets what was read");
        return imported;
    }
    ExportOptions output = options.output;
    output.dataset = import.dataset;
    const int exported = exportDataset(output, console);
    return exported == kDone || (exported == kComplained && imported == kEnded) ? imported
                                                                                : exported;
}

}  // namespace program
