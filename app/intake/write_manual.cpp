// intake_manual FOLDER: writes the man pages and the completion of shells, as they are installed
// below share/.
#include <filesystem>
#include <fstream>
#include <iostream>

#include "app/intake/manual/manual.h"

namespace {

namespace fs = std::filesystem;

void write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream << text << std::flush;
    if (!stream) throw std::runtime_error("could not write " + file.string());
}

}  // namespace

int main(int count, char** arguments) try {
    if (count != 2) return 2;
    const fs::path folder = arguments[1];
    // No page stays of a command that is gone.
    fs::remove_all(folder);
    const std::vector<program::Usage> usages = program::usageOfAll();
    for (std::size_t at = 0; at < usages.size(); ++at) {
        const std::string& command = usages[at].command;
        write(folder / "man1" / ("intake" + (command.empty() ? "" : "-" + command) + ".1"),
              program::manPage(usages, at));
    }
    write(folder / "bash/intake", program::bashCompletion(usages));
    write(folder / "zsh/_intake", program::zshCompletion(usages));
    write(folder / "fish/intake.fish", program::fishCompletion(usages));
    return 0;
} catch (const std::exception& error) {
    std::cerr << "intake_manual: " << error.what() << '\n';
    return 1;
}
