// intake convert: from an interchange file to an open format in one step.
#ifndef APP_INTAKE_EXPORT_CONVERT_H
#define APP_INTAKE_EXPORT_CONVERT_H

#include <string>

#include "app/intake/export/export.h"
#include "app/intake/source.h"

namespace program {

struct ConvertOptions {
    SourceOptions source;
    ExportOptions output;  // its dataset is found by convert itself
    bool partial = false;  // also where the import ends with an error
};

// The name of the dataset of a file: that of the file, without its folder and its endings.
std::string datasetNameFor(const std::string& file);

// Imports to a temporary workspace, which is gone in the end, and exports from there. Gives the
// exit status: the worse one of the two.
int convertFile(const ConvertOptions& options, Console& console);

}  // namespace program

#endif
