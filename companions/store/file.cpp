#include "companions/store/file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "host/qxbase/failures.h"

namespace store {

namespace {

int openRetrying(const char* path, int flags) {
    int descriptor;
    do {
        descriptor = ::open(path, flags | O_CLOEXEC, 0666);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

// Whether it is the machine that failed, and not a name that names nothing, or something else.
bool ofMachine(int error) {
    switch (error) {
        case EEXIST:
        case ENOENT:
        case ENOTDIR:
        case EISDIR:
        case ELOOP:
        case ENAMETOOLONG:
        case EINVAL:
        case ENXIO:
            return false;
        default:
            return true;
    }
}

// The same where nothing is to be written: what may not be looked at is not there.
bool failedToRead(int error) { return ofMachine(error) && error != EACCES; }

// Passes a result on, and notes a failure to find out about a path.
bool told(bool result, const std::string& path) {
    if (!result && failedToRead(errno)) rdfailC(path.c_str(), errno);
    return result;
}

File::Identity identityAt(int folder, const char* name, int flags, const std::string& path) {
    struct statx found {};
    if (!told(::statx(folder, name, flags, STATX_BASIC_STATS | STATX_BTIME, &found) == 0, path) ||
        !S_ISREG(found.stx_mode)) {
        return {};
    }
    const bool hasBirth = (found.stx_mask & STATX_BTIME) != 0;
    return {uint64_t{found.stx_dev_major} << 32 | found.stx_dev_minor,
            found.stx_ino,
            hasBirth ? found.stx_btime.tv_sec : 0,
            hasBirth ? found.stx_btime.tv_nsec : 0,
            static_cast<int64_t>(found.stx_size),
            found.stx_mtime.tv_sec,
            found.stx_mtime.tv_nsec};
}

}  // namespace

File::File(File&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      path_(std::move(other.path_)),
      opened_(other.opened_) {}

File& File::operator=(File&& other) noexcept {
    if (this != &other) {
        close();
        descriptor_ = std::exchange(other.descriptor_, -1);
        path_ = std::move(other.path_);
        opened_ = other.opened_;
    }
    return *this;
}

File::~File() { close(); }

File File::read(const std::string& path) {
    File file;
    file.path_ = path;
    file.descriptor_ = openRetrying(path.c_str(), O_RDONLY | O_NONBLOCK);
    file.refuseIrregular();
    told(file.isOpen(), path);
    return file;
}

File File::readWrite(const std::string& path) {
    File file;
    file.path_ = path;
    file.descriptor_ = openRetrying(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK);
    file.refuseIrregular();
    file.noteUnlessOpen();
    return file;
}

File File::create(const std::string& path, Creation creation) {
    constexpr int kFlags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK;
    File file;
    file.path_ = path;
    // What is new is regular, and needs no look. Most files are.
    if (creation != Creation::kKeep) {
        file.descriptor_ = openRetrying(path.c_str(), kFlags | O_EXCL);
    }
    if (creation == Creation::kKeep ||
        (creation == Creation::kAnew && !file.isOpen() && errno == EEXIST)) {
        const int flags = creation == Creation::kAnew ? kFlags | O_TRUNC : kFlags;
        file.descriptor_ = openRetrying(path.c_str(), flags);
        file.refuseIrregular();
    }
    file.noteUnlessOpen();
    return file;
}

void File::refuseIrregular() {
    if (!isOpen()) return;
    errno = 0;
    opened_ = identityAt(descriptor_, "", AT_EMPTY_PATH, path_);
    if (opened_.known()) return;
    const int failure = errno != 0 ? errno : EINVAL;
    close();
    errno = failure;
}

void File::noteUnlessOpen() const {
    if (isOpen()) return;
    if (ofMachine(errno)) {
        wrfailC(path_.c_str(), errno);
    } else if (errno != EEXIST) {
        // That something is there is for the caller to judge.
        refuseC(path_.c_str(), errno);
    }
}

int64_t File::size() const {
    struct stat information {};
    if (::fstat(descriptor_, &information) == 0) return information.st_size;
    rdfailC(path_.c_str(), errno);
    return -1;
}

File::Identity File::identity() const {
    return isOpen() ? identityAt(descriptor_, "", AT_EMPTY_PATH, path_) : Identity();
}

File::Identity File::identityOf(const std::string& path) {
    return identityAt(AT_FDCWD, path.c_str(), 0, path);
}

int64_t File::readAt(int64_t position, std::span<std::byte> bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::pread(descriptor_, bytes.data() + done, bytes.size() - done,
                                      position + static_cast<int64_t>(done));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            rdfailC(path_.c_str(), errno);
            return -1;
        }
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
            wrfailC(path_.c_str(), count < 0 ? errno : ENOSPC);
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool File::truncate(int64_t size) {
    int result;
    do {
        result = ::ftruncate(descriptor_, size);
    } while (result != 0 && errno == EINTR);
    if (result != 0) wrfailC(path_.c_str(), errno);
    return result == 0;
}

bool File::lock() {
    int result;
    do {
        result = ::flock(descriptor_, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    if (result != 0) wrfailC(path_.c_str(), errno);
    return result == 0;
}

void File::unlock() { ::flock(descriptor_, LOCK_UN); }

bool File::close() {
    if (descriptor_ < 0) return true;
    // The descriptor is gone even when close reports an interruption.
    if (::close(std::exchange(descriptor_, -1)) == 0 || errno == EINTR) return true;
    wrfailC(path_.c_str(), errno);
    return false;
}

bool makeDirectory(const std::string& path) {
    if (::mkdir(path.c_str(), 0777) == 0) return true;
    if (ofMachine(errno)) {
        wrfailC(path.c_str(), errno);
    } else {
        refuseC(path.c_str(), errno);
    }
    return false;
}

bool haveDirectory(const std::string& path) {
    if (isDirectory(path) || ::mkdir(path.c_str(), 0777) == 0) return true;
    const int failure = errno;
    // Another process may have been faster.
    if (isDirectory(path)) return true;
    wrfailC(path.c_str(), failure);
    return false;
}

bool removeFile(const std::string& path) {
    if (::unlink(path.c_str()) == 0) return true;
    if (ofMachine(errno)) wrfailC(path.c_str(), errno);
    return false;
}

bool replaceFile(const std::string& path, std::span<const std::byte> bytes) {
    const std::string fresh = path + ".new";
    // Left over from a process that was stopped, or planted.
    ::unlink(fresh.c_str());
    File file = File::create(fresh, File::Creation::kMustBeNew);
    if (!file.isOpen()) return false;
    // What cannot be brought to disk whole takes the place of nothing.
    const bool whole = file.writeAt(0, bytes) && file.close();
    if (whole && ::rename(fresh.c_str(), path.c_str()) == 0) return true;
    if (whole) wrfailC(path.c_str(), errno);
    ::unlink(fresh.c_str());
    return false;
}

bool exists(const std::string& path) {
    struct stat information {};
    // What the machine cannot tell is taken for something, so that nothing takes its place.
    return told(::lstat(path.c_str(), &information) == 0, path) || failedToRead(errno);
}

bool isLink(const std::string& path) {
    struct stat information {};
    return ::lstat(path.c_str(), &information) == 0 && S_ISLNK(information.st_mode);
}

bool isDirectory(const std::string& path) {
    struct stat information {};
    return told(::lstat(path.c_str(), &information) == 0, path) && S_ISDIR(information.st_mode);
}

bool leadsToDirectory(const std::string& path) {
    struct stat information {};
    return told(::stat(path.c_str(), &information) == 0, path) && S_ISDIR(information.st_mode);
}

}  // namespace store
