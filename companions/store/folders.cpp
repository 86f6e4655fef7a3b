#include "companions/store/folders.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "companions/store/durable.h"
#include "host/qxbase/failures.h"

namespace store {

namespace {

const char* orHere(const std::string& folder) { return folder.empty() ? "." : folder.c_str(); }

bool noted(bool result, const std::string& path) {
    if (!result) wrfailC(path.c_str(), errno);
    return result;
}

// The new name comes first: what has both for a while is not lost.
bool settleBoth(const std::string& from, const std::string& to) {
    return settleName(to) && settleName(from);
}

}  // namespace

FolderLock FolderLock::wait(const std::string& folder) {
    FolderLock lock;
    lock.handle_ = os::openFolder(orHere(folder), true);
    if (lock.held() && os::lock(lock.handle_)) return lock;
    wrfailC(folder.c_str(), errno);
    return {};
}

FolderLock FolderLock::tryNow(const std::string& folder) {
    FolderLock lock;
    lock.handle_ = os::openFolder(orHere(folder), false);
    if (lock.held() && os::tryLock(lock.handle_)) return lock;
    return {};
}

FolderLock::FolderLock(FolderLock&& other) noexcept
    : handle_(std::exchange(other.handle_, os::kNoHandle)) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
}

FolderLock::~FolderLock() {
    if (held()) os::closeHandle(handle_);
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    os::namesIn(orHere(folder), names);
    std::sort(names.begin(), names.end());
    return names;
}

std::string makeUniqueFolder(const std::string& prefix) {
    std::string path = os::makeUniqueFolder(prefix);
    if (noted(!path.empty(), prefix)) settleName(path);
    return path;
}

bool moveUnlessThere(const std::string& from, const std::string& to) {
    if (os::moveUnlessThere(from.c_str(), to.c_str())) return settleBoth(from, to);
    if (errno != EEXIST) wrfailC(to.c_str(), errno);
    return false;
}

bool moveOver(const std::string& from, const std::string& to) {
    return noted(os::moveOver(from.c_str(), to.c_str()), to) && settleBoth(from, to);
}

bool removeTree(const std::string& path) {
    return noted(os::removeTree(path.c_str()), path) && settleName(path);
}

}  // namespace store
