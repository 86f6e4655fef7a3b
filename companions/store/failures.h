// The first write of an import that failed. Routines go on after a failed write, so that what can
// be kept is kept; this is how the failure is told all the same.
#ifndef COMPANIONS_STORE_FAILURES_H
#define COMPANIONS_STORE_FAILURES_H

#include <string>

namespace store {

// Keeps the first failure since the last forgetFailures: the file, and errno.
void rememberFailure(const std::string& path, int error) noexcept;
void forgetFailures();
// Gives the failure as a message that does not end anything, and forgets it.
void tellFailures();

}  // namespace store

#endif
