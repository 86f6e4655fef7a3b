// What messages of the library mean, where their texts leave that open.
#ifndef APP_INTAKE_EXPLANATIONS_H
#define APP_INTAKE_EXPLANATIONS_H

#include <string>
#include <string_view>

namespace program {

// A line to stand behind a message; empty for most.
std::string explanationOf(std::string_view message);

}  // namespace program

#endif
