#include "app/intake/module.h"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace program {

namespace {

namespace fs = std::filesystem;

// From the folder of the program: in the build tree, and as installed.
constexpr const char* kFolders[] = {"../lib/intake", INTAKE_MODULES};

std::string fileOf(const std::string& name) {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error).parent_path();
    fs::path file;
    for (const char* folder : kFolders) {
        file = (program / folder / (name + ".so")).lexically_normal();
        if (fs::exists(file, error)) break;
    }
    return file.string();
}

}  // namespace

Module openModule(const std::string& name, const std::type_info& interface) {
    const std::string file = fileOf(name);
    const auto fail = [&](const std::string& why) {
        throw std::runtime_error("the part of intake for this could not be loaded: " + why);
    };
    // Opening it again gives the same object. It is never closed: what it made may outlive its use.
    void* library = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) fail(::dlerror());
    const auto entry = reinterpret_cast<Module (*)()>(::dlsym(library, "intake_module"));
    if (!entry) fail(file + ": no module of intake");
    const Module module = entry();
    if (std::string_view(module.version) != INTAKE_VERSION) {
        fail(file + ": is of version " + module.version + ", the program of " INTAKE_VERSION);
    }
    if (std::string_view(module.interface) != interface.name()) fail(file + ": is another module");
    return module;
}

}  // namespace program
