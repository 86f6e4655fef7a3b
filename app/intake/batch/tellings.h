// What other parts of the program print of an input, as parts of its line in the report.
#ifndef APP_INTAKE_BATCH_TELLINGS_H
#define APP_INTAKE_BATCH_TELLINGS_H

#include <string>

#include "app/intake/batch/report_line.h"

namespace program {

// What an export printed as an object.
void tellReport(const std::string& text, Told& told, MadeOutput& output);
// Lines that were printed for people, each led by its level.
void tellLines(const std::string& text, Told& told);
// The features and tables of a dataset, off the heads of its files.
void countFeatures(const std::string& dataset, const std::string& kind, MadeOutput& output);

}  // namespace program

#endif
