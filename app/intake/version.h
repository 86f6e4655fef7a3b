// What --version tells.
#ifndef APP_INTAKE_VERSION_H
#define APP_INTAKE_VERSION_H

#include <string>

namespace program {

// The version, how the program was built, and the modules that are there; none is loaded for it.
std::string versionText();

}  // namespace program

#endif
