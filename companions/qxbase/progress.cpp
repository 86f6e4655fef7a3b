#include "host/qxbase/progress.h"

#include <string>

#include "host/cpp/fixed_text.h"

namespace {

struct Host {
    QxProgress progress = nullptr;
    void* user = nullptr;
};

Host host;

}  // namespace

void prgset_(QxProgress progress, void* user) { host = {progress, user}; }

void prgtel_(const int32_t* event, const char* code, const int64_t* lines, const int64_t* bytes,
             int32_t codeLength) {
    if (!host.progress) return;
    const std::string text(qx::textArgument(code, codeLength));
    host.progress(*event, text.c_str(), *lines, *bytes, host.user);
}
