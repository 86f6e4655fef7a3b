// The reference system of a dataset.
#ifndef APP_INTAKE_EXPORT_SYSTEMS_H
#define APP_INTAKE_EXPORT_SYSTEMS_H

#include <string>

#include "app/intake/export/report.h"
#include "crs/systems.h"

namespace program {

// Of the module, which is loaded for it.
const crs::Systems& systems();

// By the dataset's projection text or, if it is not empty, by hand. What is not known goes to the
// report, as nothing that is lost: the text is kept. Throws a std::runtime_error for a system by
// hand that is none.
crs::ReferenceSystem systemOf(const std::string& dataset, const std::string& byHand,
                              ExportReport& report);

// The same by the projection text alone, with nothing told: undefined without the text, or without
// the module.
crs::ReferenceSystem systemIfKnown(const std::string& dataset);

// The same for people, in a line; empty without a projection text, or without the module.
std::string systemInWords(const std::string& dataset);

}  // namespace program

#endif
