#include "app/intake/pack.h"

#include "app/intake/commands/commands.h"

namespace program {

namespace {

void addPacking(CLI::App& command, const std::shared_ptr<PackOptions>& options, Console& console,
                int& status) {
    addSource(command, options->source);
    command.add_option("OUT", options->output, "The file to make, or its first volume")->required();
    if (options->level != 0) {
        command.add_option("--level", options->level, "1: blanks only; 2: numbers too (default)")
            ->check(CLI::Range(1, 2), "1|2");
    }
    command
        .add_option("--lines-per-volume", options->linesPerVolume,
                    "Split into volumes of so many lines; OUT then ends in two digits")
        ->type_name("N")
        ->check(CLI::Range(2, 1000000000));
    command.callback([=, &console, &status] { status = pack(*options, console); });
}

}  // namespace

void addPack(CLI::App& app, Console& console, int& status) {
    auto options = std::make_shared<PackOptions>();
    options->level = 2;
    addPacking(*app.add_subcommand("pack", "Write a file in compressed form"), options, console,
               status);
}

void addUnpack(CLI::App& app, Console& console, int& status) {
    addPacking(*app.add_subcommand("unpack", "Write a file in plain form"),
               std::make_shared<PackOptions>(), console, status);
}

}  // namespace program
