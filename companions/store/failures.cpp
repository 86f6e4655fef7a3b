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
std::string damaged;

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

void rememberDamage(const std::string& path) noexcept {
    try {
        if (damaged.empty()) damaged = path;
    } catch (...) {
        damaged.clear();
    }
}

void forgetFailures() {
    failure = {};
    damaged.clear();
}

void tellFailures() {
    if (!damaged.empty()) {
        qx::call(meschr_, std::string_view(damaged), 0);
        damaged.clear();
        qx::call(nonftl_, "%1% is damaged and cannot be read to its end", -1);
    }
    if (failure.error == 0) return;
    const std::string reason = std::generic_category().message(failure.error);
    qx::call(meschr_, std::string_view(failure.path), 0);
    qx::call(meschr_, std::string_view(reason), 0);
    forgetFailures();
    qx::call(nonftl_, "Could not write %1%: %2%", -1);
}

}  // namespace store
