#include "app/intake/subclasses.h"

#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

std::vector<std::string> subclassesOf(const std::string& coverage, int32_t code) {
    std::vector<std::string> names;
    int32_t walk = 0;
    int32_t status = 0;
    qx::call(copen_, walk, std::string_view(coverage), code, code, status);
    if (status != 0) return names;
    for (;;) {
        qx::FixedText<32> name;
        int32_t count = 0;
        qx::call(centry_, walk, name, count);
        if (count == 0) break;
        names.emplace_back(name.view());
    }
    qx::call(cclose_, walk);
    return names;
}

}  // namespace program
