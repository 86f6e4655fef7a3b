// Modules: the parts of the program that need a library of someone else. Each is a shared object
// lib/intake/NAME.so beside the program, linked by nothing and opened by the command that needs it.
#ifndef APP_INTAKE_MODULE_H
#define APP_INTAKE_MODULE_H

#include <string>
#include <typeinfo>
#include <vector>

namespace program {

// What the one symbol that a module exports, intake_module, gives.
struct Module {
    const char* version;    // of the program that it was built with
    const char* interface;  // the name of the type behind object
    const void* object;
};

// The module of a name, opened on first use and for as long as the program runs. Throws a
// std::runtime_error whose text is for the user, with the file that was looked for, where the
// module is missing, cannot be opened or is not of this program.
Module openModule(const std::string& name, const std::type_info& interface);

// The names of the modules that are there, in their order; none is opened for it.
std::vector<std::string> modulesThere();

// The object of the module of a name: loadModule<Pictures>("png").
template <class Interface>
const Interface& loadModule(const std::string& name) {
    return *static_cast<const Interface*>(openModule(name, typeid(Interface)).object);
}

}  // namespace program

// Stands at the end of modules/NAME.cpp: the module's object is a constant Object, which is an
// Interface and has a constructor without arguments.
#define INTAKE_MODULE(Interface, Object)                                                           \
    extern "C" __attribute__((visibility("default"))) program::Module intake_module();             \
    program::Module intake_module() {                                                              \
        static const Object object;                                                                \
        return {INTAKE_VERSION, typeid(Interface).name(), static_cast<const Interface*>(&object)}; \
    }

#endif
