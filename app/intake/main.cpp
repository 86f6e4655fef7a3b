#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "app/intake/command_line.h"
#include "app/intake/temporary_folder.h"

namespace {

// The last word, which needs no memory.
void tellOutOfMemory() {
    static constexpr char kText[] = "intake: out of memory\n";
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, kText, sizeof kText - 1);
}

// What only reads has nothing to finish. It ends where memory does, because neither the library's
// directory iterators nor JSON values survive that.
void endReading() {
    tellOutOfMemory();
    ::_exit(program::kEnded);
}

bool onlyReads(std::string_view command) {
    return command == "show" || command == "dump" || command == "draw";
}

// Somebody who wants no colours says so (no-color.org), and a screen that has none too.
bool wantsColours() {
    const char* const unwanted = std::getenv("NO_COLOR");
    const char* const screen = std::getenv("TERM");
    return (!unwanted || !*unwanted) && (!screen || std::string_view(screen) != "dumb");
}

// A library that needs memory in order to give some back ends the program here.
[[noreturn]] void endForWantOfMemory() {
    try {
        if (const auto exception = std::current_exception()) std::rethrow_exception(exception);
    } catch (const std::bad_alloc&) {
        tellOutOfMemory();
        program::removeTemporaryFolders();
        ::_exit(program::kEnded);
    } catch (...) {}
    program::removeTemporaryFolders();
    std::abort();
}

}  // namespace

int main(int count, char** arguments) {
    std::set_terminate(endForWantOfMemory);
    // A file that grows beyond a limit of the system is a write that fails, and is told as one.
    std::signal(SIGXFSZ, SIG_IGN);
    if (count > 1 && onlyReads(arguments[1])) std::set_new_handler(endReading);
    std::ios::sync_with_stdio(false);
    const bool terminal = ::isatty(STDERR_FILENO) != 0;
    program::Console console{std::cout, std::cerr, terminal, terminal && wantsColours(),
                             ::isatty(STDIN_FILENO) != 0 ? &std::cin : nullptr};
    try {
        return program::run(std::vector<std::string>(arguments + 1, arguments + count), console);
    } catch (const std::bad_alloc&) {
        tellOutOfMemory();
        return program::kEnded;
    }
}
