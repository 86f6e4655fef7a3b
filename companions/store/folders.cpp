#include "companions/store/folders.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "companions/store/file.h"
#include "host/qxbase/failures.h"

namespace store {

namespace {

int openFolder(const std::string& folder, int flags) {
    const char* path = folder.empty() ? "." : folder.c_str();
    return ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags);
}

int lockWhole(int descriptor, int how) {
    int result;
    do {
        result = ::flock(descriptor, how);
    } while (result != 0 && errno == EINTR);
    return result;
}

bool noted(bool result, const std::string& path) {
    if (!result) wrfailC(path.c_str(), errno);
    return result;
}

}  // namespace

FolderLock FolderLock::wait(const std::string& folder) {
    FolderLock lock;
    lock.descriptor_ = openFolder(folder, 0);
    if (lock.descriptor_ >= 0 && lockWhole(lock.descriptor_, LOCK_EX) == 0) return lock;
    wrfailC(folder.c_str(), errno);
    return {};
}

FolderLock FolderLock::tryNow(const std::string& folder) {
    FolderLock lock;
    lock.descriptor_ = openFolder(folder, O_NOFOLLOW);
    if (lock.descriptor_ >= 0 && lockWhole(lock.descriptor_, LOCK_EX | LOCK_NB) == 0) return lock;
    return {};
}

FolderLock::FolderLock(FolderLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FolderLock& FolderLock::operator=(FolderLock&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

FolderLock::~FolderLock() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code failure;
    const std::filesystem::path path = folder.empty() ? "." : folder;
    for (std::filesystem::directory_iterator each(path, failure), end; !failure && each != end;
         each.increment(failure)) {
        names.push_back(each->path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string makeUniqueFolder(const std::string& prefix) {
    std::string path = prefix + "XXXXXX";
    return noted(::mkdtemp(path.data()) != nullptr, prefix) ? path : std::string();
}

bool moveUnlessThere(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    // A file system that cannot be asked so. Whoever makes something of this name between the two
    // calls loses it only if it is an empty folder or a file.
    if (errno == EINVAL || errno == ENOSYS) {
        if (!exists(to)) return noted(::rename(from.c_str(), to.c_str()) == 0, to);
        errno = EEXIST;
    }
    if (errno != EEXIST) wrfailC(to.c_str(), errno);
    return false;
}

bool moveOver(const std::string& from, const std::string& to) {
    return noted(::rename(from.c_str(), to.c_str()) == 0, to);
}

bool removeTree(const std::string& path) {
    std::error_code failure;
    std::filesystem::remove_all(path, failure);
    if (failure) wrfailC(path.c_str(), failure.value());
    return !failure;
}

}  // namespace store
