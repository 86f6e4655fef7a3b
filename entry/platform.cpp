#include "entry/platform.h"

#include <dlfcn.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace intake {

LibraryHandle LoadLibraryA(const char* name) {
    const std::string_view full(name);
    const std::string_view base = full.substr(0, full.rfind('.'));
    return dlopen(("lib" + std::string(base) + ".so.0").c_str(), RTLD_NOW | RTLD_LOCAL);
}

void FreeLibrary(LibraryHandle library) {
    if (library) dlclose(library);
}

void MessageBoxA(void*, const char* text, const char* caption, uint32_t) {
    std::fprintf(stderr, "%s: %s\n", caption, text);
}

}  // namespace intake
