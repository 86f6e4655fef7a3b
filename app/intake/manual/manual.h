// Man pages and the completion of shells, written from the usage of the program.
#ifndef APP_INTAKE_MANUAL_MANUAL_H
#define APP_INTAKE_MANUAL_MANUAL_H

#include <string>
#include <vector>

#include "app/intake/manual/usage.h"

namespace program {

// The page of usages[at] in the language of man(7).
std::string manPage(const std::vector<Usage>& usages, std::size_t at);

// A script for each shell, which completes commands, options, values of a fixed set and files.
std::string bashCompletion(const std::vector<Usage>& usages);
std::string zshCompletion(const std::vector<Usage>& usages);
std::string fishCompletion(const std::vector<Usage>& usages);

// What an option's value or a positional is completed with.
enum class Completed { nothing, choices, files };
Completed completed(const Argument& argument);

// The texts, each led by lead and followed by behind.
std::string joined(const std::vector<std::string>& texts, const char* lead, const char* behind);
// A text with mark in front of each character of some.
std::string marked(const std::string& text, const char* some, const std::string& mark);

}  // namespace program

#endif
