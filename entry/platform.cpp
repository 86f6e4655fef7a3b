#include "entry/platform.h"

#include <dlfcn.h>

#include <cstdio>
#include <string_view>

namespace intake {

#ifdef INTAKE_COMPANIONS_LINKED
// Static companions are in the program itself, which is always there.
LibraryHandle LoadLibraryA(const char* name) {
    for (const std::string_view each : {"qxbase.", "qxfeat.", "qxgridio."}) {
        if (std::string_view(name).starts_with(each)) return dlopen(nullptr, RTLD_NOW | RTLD_LOCAL);
    }
    return nullptr;
}
#else
LibraryHandle LoadLibraryA(const char* name) {
    const std::string_view full(name);
    const std::string_view base = full.substr(0, full.rfind('.'));
    char file[256];
    const int length = std::snprintf(file, sizeof file, "lib%.*s.so.0",
                                     static_cast<int>(base.size()), base.data());
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof file) return nullptr;
    return dlopen(file, RTLD_NOW | RTLD_LOCAL);
}
#endif

void FreeLibrary(LibraryHandle library) {
    if (library) dlclose(library);
}

void MessageBoxA(void*, const char* text, const char* caption, uint32_t) {
    std::fprintf(stderr, "%s: %s\n", caption, text);
}

}  // namespace intake
