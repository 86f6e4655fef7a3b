#include "host/qxbase/progress.h"

#include <atomic>
#include <string>

#include "host/cpp/fixed_text.h"

namespace {

struct Host {
    QxProgress progress = nullptr;
    void* user = nullptr;
};

Host host;

std::atomic<int32_t> stopAsked = 0;
static_assert(std::atomic<int32_t>::is_always_lock_free);

}  // namespace

void prgset_(QxProgress progress, void* user) { host = {progress, user}; }

void prgstp_(const int32_t* asked) { stopAsked = *asked; }

void prgask_(int32_t* asked) { *asked = stopAsked; }

void prgtel_(const int32_t* event, const char* code, const int64_t* lines, const int64_t* bytes,
             int32_t codeLength) {
    if (!host.progress) return;
    const std::string text(qx::textArgument(code, codeLength));
    host.progress(*event, text.c_str(), *lines, *bytes, host.user);
}
