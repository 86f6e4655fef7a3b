// The named parts of a coverage's annotation and regions.
#ifndef APP_INTAKE_SUBCLASSES_H
#define APP_INTAKE_SUBCLASSES_H

#include <cstdint>
#include <string>
#include <vector>

namespace program {

// The subclasses that have a file of a file code, in the order in which they were made; "" is the
// part without a name.
std::vector<std::string> subclassesOf(const std::string& coverage, int32_t code);

}  // namespace program

#endif
