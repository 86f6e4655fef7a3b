// The messages of the library on the console.
#ifndef APP_INTAKE_MESSAGES_H
#define APP_INTAKE_MESSAGES_H

#include <cstdint>
#include <string_view>

#include "app/intake/console.h"

namespace program {

// The name of a level in JSON: inform, warn, nonftl, error or fatal.
const char* levelName(int32_t level);

// Prints a message to the errors, one line per line of text, each led by its level.
void printMessage(Console& console, int32_t level, std::string_view text);

}  // namespace program

#endif
