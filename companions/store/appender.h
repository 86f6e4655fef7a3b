// Sequential writing through one large buffer.
#ifndef COMPANIONS_STORE_APPENDER_H
#define COMPANIONS_STORE_APPENDER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "companions/store/file.h"

namespace store {

class Appender {
  public:
    static constexpr std::size_t kBufferBytes = 256 * 1024;

    // Takes the file over; writing goes on at the given position.
    Appender(File file, int64_t position) : file_(std::move(file)), position_(position) {}

    // Room for the next bytes, to be filled before any other call. The room is good for one fill.
    std::byte* reserve(std::size_t bytes) {
        if (buffer_.size() - used_ < bytes) makeRoom(bytes);
        std::byte* place = buffer_.data() + used_;
        used_ += bytes;
        return place;
    }
    void append(std::span<const std::byte> bytes);

    // Where the next byte goes.
    int64_t end() const { return position_ + static_cast<int64_t>(used_); }
    bool failed() const { return failed_; }
    // Whether nothing has reached the file yet.
    bool isWholeInBuffer() const { return position_ == 0 && !failed_; }
    // Overwrites bytes at the front of what is in the buffer.
    void overwriteFront(std::span<const std::byte> bytes) {
        std::copy(bytes.begin(), bytes.end(), buffer_.begin());
    }
    // Writes what is in the buffer. After a failed write nothing more reaches the file.
    void flush();
    File& file() { return file_; }
    const File& file() const { return file_; }

  private:
    void makeRoom(std::size_t bytes);

    File file_;
    int64_t position_;
    std::size_t used_ = 0;
    bool failed_ = false;
    std::vector<std::byte> buffer_;
};

}  // namespace store

#endif
