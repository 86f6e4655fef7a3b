// Where a command prints, and how it ends.
#ifndef APP_INTAKE_CONSOLE_H
#define APP_INTAKE_CONSOLE_H

#include <istream>
#include <ostream>
#include <string>
#include <string_view>

namespace program {

struct Console {
    std::ostream& output;
    std::ostream& errors;
    bool terminal = false;          // errors go to somebody's screen
    bool coloured = false;          // ... that may show colours
    std::istream* input = nullptr;  // where somebody can be asked, null if nobody can
};

enum ExitStatus : int {
    kDone = 0,
    kEnded = 1,       // the import or the command ended with an error
    kWrongUsage = 2,  // nothing was done
    kComplained = 3   // imported, but a non-fatal error was reported
};

// A text for a screen or a log: UTF-8, and every control character escaped (\x1B).
std::string shown(std::string_view text);

// What leads a line of the errors: "warning: ", in the colour of its level where there are colours.
std::string lead(const Console& console, std::string_view level);

// One line of the program's own to the errors.
void complain(Console& console, std::string_view text);
// ... and of a text with line feeds, as many lines.
void complainInLines(Console& console, std::string_view text);

}  // namespace program

#endif
