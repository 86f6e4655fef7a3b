#include "containers/descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "containers/archive.h"
#include "containers/magic.h"

namespace containers {

namespace {

std::string reason() { return std::strerror(errno); }

[[noreturn]] void failToWrite() {
    throw Failure("could not write a temporary file: " + reason() +
                  "; TMPDIR names another folder for it");
}

constexpr mode_t kOwnerOnly = 0600;

}  // namespace

Descriptor::~Descriptor() {
    if (number_ >= 0) ::close(number_);
}

Descriptor Descriptor::read(const std::string& path, const std::string& shownAs) {
    Descriptor opened(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (opened.number_ < 0) throw Failure("could not open " + shownAs + ": " + reason());
    return opened;
}

Descriptor Descriptor::create(const std::string& path) {
    constexpr int kNew = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW;
    Descriptor made(::open(path.c_str(), kNew, kOwnerOnly));
    if (made.number_ < 0) failToWrite();
    return made;
}

Descriptor Descriptor::createUnnamed(const std::string& folder) {
    std::string path = folder + "/nested.XXXXXX";
    Descriptor made(::mkostemp(path.data(), O_CLOEXEC));
    if (made.number_ < 0) failToWrite();
    ::unlink(path.c_str());
    return made;
}

uint64_t Descriptor::size() const {
    struct stat status {};
    return ::fstat(number_, &status) == 0 ? static_cast<uint64_t>(status.st_size) : 0;
}

void Descriptor::toStart() const { ::lseek(number_, 0, SEEK_SET); }

std::string Descriptor::start() const {
    std::string bytes(kStartBytes, '\0');
    const ssize_t count = ::pread(number_, bytes.data(), bytes.size(), 0);
    bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return bytes;
}

void Descriptor::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t written = ::write(number_, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) failToWrite();
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

}  // namespace containers
