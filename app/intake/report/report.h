// intake report: what batches came to.
#ifndef APP_INTAKE_REPORT_REPORT_H
#define APP_INTAKE_REPORT_REPORT_H

#include <string>
#include <vector>

#include "app/intake/console.h"

namespace program {

struct ReportOptions {
    std::vector<std::string> files;
    std::string list;   // of inputs that should be there; "-" for standard input
    bool json = false;  // one object
    bool html = false;  // one page, with a row an input
};

// Prints the sums of all files together; gives the exit status: that of a batch of all inputs,
// where one that is missing counts as failed and a damaged line as partial.
int reportOn(const ReportOptions& options, Console& console);

}  // namespace program

#endif
