// The first write of an import that failed. Routines go on after a failed write, so that what can
// be kept is kept; this is how the failure is told all the same.
#ifndef COMPANIONS_STORE_FAILURES_H
#define COMPANIONS_STORE_FAILURES_H

#include <string>

namespace store {

struct Failure {
    std::string path;
    int error = 0;  // errno
    explicit operator bool() const { return error != 0; }
};

// Keeps the first failure since the last forgetFailures.
void rememberFailure(const std::string& path, int error) noexcept;
const Failure& firstFailure();
void forgetFailures();

}  // namespace store

#endif
