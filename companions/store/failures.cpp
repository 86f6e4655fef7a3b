#include "companions/store/failures.h"

#include <system_error>

#include "host/cpp/call.h"
#include "host/qxbase/messages.h"

namespace store {

namespace {

struct Failure {
    std::string path;
    int error = 0;
};

Failure failure;

}  // namespace

void rememberFailure(const std::string& path, int error) noexcept {
    if (failure.error != 0) return;
    failure.error = error;
    try {
        failure.path = path;
    } catch (...) {
        failure.path.clear();
    }
}

void forgetFailures() { failure = {}; }

void tellFailures() {
    if (failure.error == 0) return;
    const std::string reason = std::generic_category().message(failure.error);
    qx::call(meschr_, std::string_view(failure.path), 0);
    qx::call(meschr_, std::string_view(reason), 0);
    forgetFailures();
    qx::call(nonftl_, "Could not write %1%: %2%", -1);
}

}  // namespace store
