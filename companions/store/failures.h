// The first write of an import that failed, and the first stored file that was found damaged.
// Routines go on after either, so that what can be kept or read is; this is how it is told all the
// same.
#ifndef COMPANIONS_STORE_FAILURES_H
#define COMPANIONS_STORE_FAILURES_H

#include <string>

namespace store {

// Keeps the first failure since the last forgetFailures: the file, and errno.
void rememberFailure(const std::string& path, int error) noexcept;
// Keeps the first file since then that holds less than it claims.
void rememberDamage(const std::string& path) noexcept;
void forgetFailures();
// Gives both as messages that do not end anything, and forgets them.
void tellFailures();

}  // namespace store

#endif
