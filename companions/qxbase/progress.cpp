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

std::atomic<int64_t*> dueLine = nullptr;
static_assert(std::atomic<int64_t*>::is_always_lock_free);
static_assert(std::atomic_ref<int64_t>::is_always_lock_free);

}  // namespace

void prgset_(QxProgress progress, void* user) { host = {progress, user}; }

void prgstp_(const int32_t* asked) {
    stopAsked = *asked;
    if (int64_t* line = dueLine) std::atomic_ref<int64_t>{* line} = 0;
}

void prgask_(int32_t* asked) { *asked = stopAsked; }

void prgdue_(int64_t* line) { dueLine = line; }

void prgtel_(const int32_t* event, const char* code, const int64_t* lines, const int64_t* bytes,
             int32_t codeLength) {
    if (!host.progress) return;
    const std::string text(qx::textArgument(code, codeLength));
    host.progress(*event, text.c_str(), *lines, *bytes, host.user);
}
