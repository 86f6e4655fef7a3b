#include "app/intake/version.h"

#include "app/intake/module.h"

namespace program {

std::string versionText() {
    std::string modules;
    for (const std::string& name : modulesThere()) modules += (modules.empty() ? "" : ", ") + name;
    return "intake " INTAKE_VERSION "\nbuild: " INTAKE_BUILD "\nmodules: " +
           (modules.empty() ? "none" : modules);
}

}  // namespace program
