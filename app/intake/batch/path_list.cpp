#include "app/intake/batch/path_list.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>

namespace program {

PathList::PathList(const std::string& file)
    : file_(file == "-" ? "standard input" : file),
      descriptor_(file == "-" ? STDIN_FILENO : ::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) throw std::runtime_error(file + ": " + std::strerror(errno));
}

PathList::~PathList() {
    if (descriptor_ != STDIN_FILENO) ::close(descriptor_);
}

// Whether there is something more, or the end.
bool PathList::fill(bool wait) {
    constexpr std::size_t kPiece = 1 << 16;
    pollfd ready{descriptor_, POLLIN, 0};
    if (::poll(&ready, 1, wait ? -1 : 0) == 0) return false;
    bytes_.erase(0, at_);
    at_ = 0;
    const std::size_t before = bytes_.size();
    bytes_.resize(before + kPiece);
    const ssize_t count = ::read(descriptor_, bytes_.data() + before, kPiece);
    bytes_.resize(before + static_cast<std::size_t>(count > 0 ? count : 0));
    if (count < 0 && errno != EINTR && errno != EAGAIN) {
        throw std::runtime_error(file_ + ": " + std::strerror(errno));
    }
    ended_ = count == 0;
    if (!begun_ && count > 0) {
        begun_ = true;
        separator_ = bytes_.find('\0') == std::string::npos ? '\n' : '\0';
    }
    return true;
}

PathList::Step PathList::next(std::string& path, bool wait) {
    for (;;) {
        const std::size_t end = bytes_.find(separator_, at_);
        if (begun_ && end != std::string::npos) {
            path = bytes_.substr(at_, end - at_);
            at_ = end + 1;
        } else if (ended_) {
            if (at_ == bytes_.size()) return Step::kEnd;
            path = bytes_.substr(at_);
            at_ = bytes_.size();
        } else {
            if (!fill(wait)) return Step::kWait;
            continue;
        }
        if (separator_ == '\n' && path.ends_with('\r')) path.pop_back();
        if (!path.empty()) return Step::kPath;
    }
}

}  // namespace program
