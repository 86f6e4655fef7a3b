#include "companions/store/durable.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include "companions/store/member_names.h"
#include "host/qxbase/failures.h"
#include "system/system.h"

namespace store {

namespace {

int lasting = 0;

}  // namespace

Lasting::Lasting() { ++lasting; }

Lasting::~Lasting() { --lasting; }

bool durable() {
    if (lasting > 0) return true;
    const char* wish = std::getenv("INTAKE_SYNC");
    return wish && std::string_view(wish) == "1";
}

bool settleName(const std::string& path) {
    if (!durable()) return true;
    const std::string folder(directoryPart(path));
    if (os::syncFolder(folder.empty() ? "." : folder.c_str())) return true;
    wrfailC(folder.c_str(), errno);
    return false;
}

}  // namespace store
