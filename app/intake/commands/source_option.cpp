#include "app/intake/commands/commands.h"

namespace program {

void addSource(CLI::App& command, SourceOptions& source) {
    command
        .add_option("FILE", source.file,
                    "The file or its first volume, also compressed or in an archive; ARCHIVE::NAME "
                    "for one of several; - for standard input")
        ->required();
    addMaxSize(command, source.mostBytes);
}

void addMaxSize(CLI::App& command, uint64_t& mostBytes) {
    command.add_option("--max-size", mostBytes, "The most that may be expanded (64G); K, M, G, T")
        ->type_name("SIZE")
        ->transform(CLI::AsSizeValue(false).description(""));
}

}  // namespace program
