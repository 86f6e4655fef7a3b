#include "entry/platform.h"

#include <string_view>

#include "system/system.h"

namespace intake {

LibraryHandle LoadLibraryA(const char* name) {
#ifdef INTAKE_COMPANIONS_LINKED
    // Static companions are in the program itself, which is always there.
    for (const std::string_view each : {"qxbase.", "qxfeat.", "qxgridio."}) {
        if (std::string_view(name).starts_with(each)) return os::thisProgram();
    }
    return nullptr;
#else
    return os::loadCompanion(name);
#endif
}

void FreeLibrary(LibraryHandle library) {
    if (library) os::freeLibrary(library);
}

void MessageBoxA(void*, const char* text, const char* caption, uint32_t style) {
    os::messageBox(text, caption, style);
}

}  // namespace intake
