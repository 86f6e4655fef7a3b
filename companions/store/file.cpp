#include "companions/store/file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "companions/store/failures.h"

namespace store {

namespace {

int openRetrying(const char* path, int flags) {
    int descriptor;
    do {
        descriptor = ::open(path, flags | O_CLOEXEC, 0666);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

}  // namespace

File::File(File&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)), path_(std::move(other.path_)) {}

File& File::operator=(File&& other) noexcept {
    if (this != &other) {
        close();
        descriptor_ = std::exchange(other.descriptor_, -1);
        path_ = std::move(other.path_);
    }
    return *this;
}

File::~File() { close(); }

File File::read(const std::string& path) {
    File file;
    file.path_ = path;
    file.descriptor_ = openRetrying(path.c_str(), O_RDONLY | O_NONBLOCK);
    file.refuseIrregular();
    return file;
}

File File::readWrite(const std::string& path) {
    File file;
    file.path_ = path;
    file.descriptor_ = openRetrying(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK);
    file.refuseIrregular();
    return file;
}

File File::create(const std::string& path, Creation creation) {
    const int flags = creation == Creation::kAnew        ? O_TRUNC
                      : creation == Creation::kMustBeNew ? O_EXCL
                                                         : 0;
    File file;
    file.path_ = path;
    file.descriptor_ =
        openRetrying(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | flags);
    file.refuseIrregular();
    return file;
}

void File::refuseIrregular() {
    struct stat information {};
    if (isOpen() && (::fstat(descriptor_, &information) != 0 || !S_ISREG(information.st_mode))) {
        close();
        errno = EINVAL;
    }
}

int64_t File::size() const {
    struct stat information {};
    return ::fstat(descriptor_, &information) == 0 ? information.st_size : -1;
}

File::Identity File::identity() const {
    struct stat information {};
    if (::fstat(descriptor_, &information) != 0) return {};
    return {information.st_dev, information.st_ino, information.st_size, information.st_mtim.tv_sec,
            information.st_mtim.tv_nsec};
}

int64_t File::readAt(int64_t position, std::span<std::byte> bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::pread(descriptor_, bytes.data() + done, bytes.size() - done,
                                      position + static_cast<int64_t>(done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return -1;
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    return static_cast<int64_t>(done);
}

bool File::writeAt(int64_t position, std::span<const std::byte> bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::pwrite(descriptor_, bytes.data() + done, bytes.size() - done,
                                       position + static_cast<int64_t>(done));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            rememberFailure(path_, count < 0 ? errno : ENOSPC);
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool File::truncate(int64_t size) {
    if (::ftruncate(descriptor_, size) == 0) return true;
    rememberFailure(path_, errno);
    return false;
}

bool File::lock() {
    int result;
    do {
        result = ::flock(descriptor_, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

void File::close() {
    if (descriptor_ < 0) return;
    // The descriptor is gone even when close reports an interruption.
    if (::close(std::exchange(descriptor_, -1)) != 0 && errno != EINTR) {
        rememberFailure(path_, errno);
    }
}

bool makeDirectory(const std::string& path) { return ::mkdir(path.c_str(), 0777) == 0; }

bool exists(const std::string& path) {
    struct stat information {};
    return ::lstat(path.c_str(), &information) == 0;
}

bool isLink(const std::string& path) {
    struct stat information {};
    return ::lstat(path.c_str(), &information) == 0 && S_ISLNK(information.st_mode);
}

bool isDirectory(const std::string& path) {
    struct stat information {};
    return ::lstat(path.c_str(), &information) == 0 && S_ISDIR(information.st_mode);
}

bool leadsToDirectory(const std::string& path) {
    struct stat information {};
    return ::stat(path.c_str(), &information) == 0 && S_ISDIR(information.st_mode);
}

}  // namespace store
