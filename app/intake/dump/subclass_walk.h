// The subclasses of a coverage, one after the other.
#ifndef APP_INTAKE_DUMP_SUBCLASS_WALK_H
#define APP_INTAKE_DUMP_SUBCLASS_WALK_H

#include <string>

#include "host/cpp/call.h"
#include "host/qxfeat.h"

namespace program {

// Calls visit(name) for each subclass that has a file of a code, in the order of their creation.
template <class Visit>
void eachSubclass(const std::string& coverage, int32_t code, Visit&& visit) {
    int32_t walk = 0;
    int32_t status = 0;
    qx::call(copen_, walk, std::string_view(coverage), code, code, status);
    if (status != 0) return;
    qx::FixedText<32> name;
    for (;;) {
        int32_t count = 0;
        qx::call(centry_, walk, name, count);
        if (count == 0) break;
        visit(name.view());
    }
    qx::call(cclose_, walk);
}

}  // namespace program

#endif
