#include "app/intake/manual/manual.h"

#include <cstring>

namespace program {

Completed completed(const Argument& argument) {
    if (!argument.choices.empty()) return Completed::choices;
    return argument.positional ? Completed::files : Completed::nothing;
}

std::string joined(const std::vector<std::string>& texts, const char* lead, const char* behind) {
    std::string result;
    for (const std::string& text : texts) result += lead + text + behind;
    return result;
}

std::string marked(const std::string& text, const char* some, const std::string& mark) {
    std::string result;
    for (const char character : text) {
        if (std::strchr(some, character)) result += mark;
        result += character;
    }
    return result;
}

}  // namespace program
