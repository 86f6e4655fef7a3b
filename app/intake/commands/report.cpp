#include "app/intake/report/report.h"

#include "app/intake/commands/commands.h"

namespace program {

void addReport(CLI::App& app, Console& console, int& status) {
    auto* command = app.add_subcommand("report", "Sum up the reports of batches");
    auto options = std::make_shared<ReportOptions>();
    command->add_option("FILE", options->files, "A report that batch wrote")->required();
    command
        ->add_option("--list", options->list,
                     "Tell which paths of a list have no line; - for standard input")
        ->type_name("LIST");
    command->add_flag("--json", options->json, "Print the sums as one JSON object");
    command->add_flag("--html", options->html, "Print a page with a row an input");
    command->callback([=, &console, &status] {
        if (options->json && options->html) {
            throw CLI::ValidationError("--html", "and --json exclude each other");
        }
        status = reportOn(*options, console);
    });
}

}  // namespace program
