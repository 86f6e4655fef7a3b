#include "companions/store/file.h"

#include <cerrno>
#include <utility>

#include "companions/store/durable.h"
#include "host/qxbase/failures.h"
#include "system/system.h"

namespace store {

namespace {

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

// The same for a failure to write.
bool noted(bool result, const std::string& path) {
    if (!result) wrfailC(path.c_str(), errno);
    return result;
}

}  // namespace

File::File(File&& other) noexcept
    : handle_(std::exchange(other.handle_, os::kNoHandle)),
      path_(std::move(other.path_)),
      opened_(other.opened_),
      made_(other.made_),
      changed_(other.changed_),
      keepsNothing_(other.keepsNothing_) {}

File& File::operator=(File&& other) noexcept {
    if (this != &other) {
        close();
        handle_ = std::exchange(other.handle_, os::kNoHandle);
        path_ = std::move(other.path_);
        opened_ = other.opened_;
        made_ = other.made_;
        changed_ = other.changed_;
        keepsNothing_ = other.keepsNothing_;
    }
    return *this;
}

File::~File() { close(); }

File File::read(const std::string& path) {
    File file;
    file.path_ = path;
    file.handle_ = os::openFile(path.c_str(), os::Opening::kRead);
    file.refuseIrregular();
    told(file.isOpen(), path);
    return file;
}

File File::readWrite(const std::string& path) {
    File file;
    file.path_ = path;
    file.handle_ = os::openFile(path.c_str(), os::Opening::kReadWrite);
    file.refuseIrregular();
    file.noteUnlessOpen();
    return file;
}

File File::create(const std::string& path, Creation creation) {
    File file;
    file.path_ = path;
    // What is new is regular, and needs no look. Most files are.
    if (creation != Creation::kKeep) {
        file.handle_ = os::openFile(path.c_str(), os::Opening::kMakeNew);
        file.made_ = file.changed_ = file.isOpen();
    }
    if (creation == Creation::kKeep ||
        (creation == Creation::kAnew && !file.isOpen() && errno == EEXIST)) {
        const auto how =
            creation == Creation::kAnew ? os::Opening::kMakeOrEmpty : os::Opening::kMakeOrKeep;
        file.handle_ = os::openFile(path.c_str(), how);
        file.changed_ = creation == Creation::kAnew;
        file.refuseIrregular();
    }
    file.noteUnlessOpen();
    return file;
}

void File::refuseIrregular() {
    if (!isOpen() || told(os::identify(handle_, opened_), path_)) return;
    const int failure = errno;
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
    const int64_t bytes = os::sizeOf(handle_);
    if (bytes < 0) rdfailC(path_.c_str(), errno);
    return bytes;
}

File::Identity File::identity() const {
    Identity found;
    if (isOpen()) told(os::identify(handle_, found), path_);
    return found;
}

File::Identity File::identityOf(const std::string& path) {
    Identity found;
    told(os::identifyPath(path.c_str(), found), path);
    return found;
}

int64_t File::readAt(int64_t position, std::span<std::byte> bytes) const {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const int64_t count =
            os::readAt(handle_, position + static_cast<int64_t>(done), bytes.subspan(done));
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
    changed_ = !keepsNothing_;
    std::size_t done = 0;
    while (done < bytes.size()) {
        const int64_t count =
            os::writeAt(handle_, position + static_cast<int64_t>(done), bytes.subspan(done));
        if (count <= 0) {
            wrfailC(path_.c_str(), count < 0 ? errno : ENOSPC);
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool File::truncate(int64_t size) {
    changed_ = !keepsNothing_;
    return noted(os::resize(handle_, size), path_);
}

bool File::settle() {
    if ((!changed_ && !made_) || !durable()) return true;
    if (!noted(os::sync(handle_), path_) || (made_ && !settleName(path_))) return false;
    made_ = changed_ = false;
    return true;
}

bool File::lock() { return noted(os::lock(handle_), path_); }

void File::unlock() { os::unlock(handle_); }

bool File::close() {
    if (!isOpen()) return true;
    const bool settled = settle();
    return noted(os::closeHandle(std::exchange(handle_, os::kNoHandle)), path_) && settled;
}

bool makeDirectory(const std::string& path) {
    if (os::makeFolder(path.c_str())) return settleName(path);
    if (ofMachine(errno)) {
        wrfailC(path.c_str(), errno);
    } else {
        refuseC(path.c_str(), errno);
    }
    return false;
}

bool haveDirectory(const std::string& path) {
    if (isDirectory(path)) return true;
    if (os::makeFolder(path.c_str())) return settleName(path);
    const int failure = errno;
    // Another process may have been faster.
    if (isDirectory(path)) return true;
    wrfailC(path.c_str(), failure);
    return false;
}

bool removeFile(const std::string& path) {
    if (os::removeFile(path.c_str())) return settleName(path);
    if (ofMachine(errno)) wrfailC(path.c_str(), errno);
    return false;
}

void dropFile(const std::string& path) { os::removeFile(path.c_str()); }

void dropDirectory(const std::string& path) { os::removeFolder(path.c_str()); }

bool replaceFile(const std::string& path, std::span<const std::byte> bytes) {
    const std::string fresh = path + ".new";
    // Left over from a process that was stopped, or planted.
    dropFile(fresh);
    File file = File::create(fresh, File::Creation::kMustBeNew);
    if (!file.isOpen()) return false;
    // What cannot be brought to disk whole takes the place of nothing.
    const bool whole = file.writeAt(0, bytes) && file.close();
    if (whole && noted(os::moveOver(fresh.c_str(), path.c_str()), path)) return settleName(path);
    dropFile(fresh);
    return false;
}

bool exists(const std::string& path) {
    // What the machine cannot tell is taken for something, so that nothing takes its place.
    return told(os::kindOf(path.c_str()) != os::Kind::kNothing, path) || failedToRead(errno);
}

bool isLink(const std::string& path) { return os::kindOf(path.c_str()) == os::Kind::kLink; }

bool isDirectory(const std::string& path) {
    const os::Kind kind = os::kindOf(path.c_str());
    return told(kind != os::Kind::kNothing, path) && kind == os::Kind::kFolder;
}

bool leadsToDirectory(const std::string& path) {
    const os::Kind kind = os::kindBehind(path.c_str());
    return told(kind != os::Kind::kNothing, path) && kind == os::Kind::kFolder;
}

}  // namespace store
