#include "companions/store/failures.h"

namespace store {

namespace {

Failure failure;

}  // namespace

void rememberFailure(const std::string& path, int error) noexcept {
    if (failure) return;
    failure.error = error;
    try {
        failure.path = path;
    } catch (...) {
        failure.path.clear();
    }
}

const Failure& firstFailure() { return failure; }

void forgetFailures() { failure = {}; }

}  // namespace store
