#include "companions/store/appender.h"

#include <algorithm>
#include <cstring>

namespace store {

void Appender::append(std::span<const std::byte> bytes) {
    if (!bytes.empty()) std::memcpy(reserve(bytes.size()), bytes.data(), bytes.size());
}

void Appender::flush() {
    if (used_ == 0) return;
    if (!failed_ && !file_.writeAt(position_, {buffer_.data(), used_})) failed_ = true;
    if (!failed_) position_ += static_cast<int64_t>(used_);
    used_ = 0;
}

void Appender::makeRoom(std::size_t bytes) {
    flush();
    // The buffer starts small, for the many files that hold little, and never shrinks.
    const std::size_t wanted = buffer_.empty() ? kBufferBytes / 64 : kBufferBytes;
    if (buffer_.size() < std::max(bytes, wanted)) buffer_.resize(std::max(bytes, wanted));
}

}  // namespace store
