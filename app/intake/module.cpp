#include "app/intake/module.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace program {

namespace {

namespace fs = std::filesystem;

// From the folder of the program: in the build tree, and as installed.
constexpr const char* kFolders[] = {"../lib/intake", INTAKE_MODULES};

fs::path programFolder() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).parent_path();
}

std::string fileOf(const std::string& name) {
    std::error_code error;
    const fs::path program = programFolder();
    fs::path file;
    for (const char* folder : kFolders) {
        file = (program / folder / (name + ".so")).lexically_normal();
        if (fs::exists(file, error)) break;
    }
    return file.string();
}

}  // namespace

std::vector<std::string> modulesThere() {
    std::error_code error;
    std::vector<std::string> names;
    for (const char* folder : kFolders) {
        for (const auto& entry : fs::directory_iterator(programFolder() / folder, error)) {
            const fs::path& file = entry.path();
            if (file.extension() == ".so") names.push_back(file.stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

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
