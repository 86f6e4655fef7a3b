#include "app/intake/report/report.h"

#include <memory>
#include <stdexcept>

#include "app/intake/report/page.h"
#include "app/intake/report/sums.h"

namespace program {

int reportOn(const ReportOptions& options, Console& console) {
    Sums sums;
    // The rows are printed as they are read.
    const std::unique_ptr<ReportPage> page =
        options.html ? std::make_unique<ReportPage>(console.output) : nullptr;
    sums.lines = readReports(options.files, [&](const nlohmann::json& object) {
        sums.add(object);
        if (page) page->add(object);
    });
    if (!options.list.empty()) sums.lookFor(options.list);
    if (page) {
        page->end(sums.object());
    } else if (options.json) {
        console.output << sums.object().dump() << std::endl;
    } else {
        sums.print(console.output);
    }
    console.output.flush();
    if (!console.output) throw std::runtime_error("could not write the output");
    if (sums.count("failed") != 0 || sums.missing() != 0) return kEnded;
    return sums.count("partial") != 0 || sums.lines.damaged != 0 ? kComplained : kDone;
}

}  // namespace program
