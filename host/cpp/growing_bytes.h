// Bytes that grow at their end. Large ones grow in small steps, which the system serves by moving
// pages and not bytes, so that a record of any size is in memory about once.
#ifndef HOST_CPP_GROWING_BYTES_H
#define HOST_CPP_GROWING_BYTES_H

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace qx {

class GrowingBytes {
  public:
    std::byte* data() { return bytes_.get(); }
    const std::byte* data() const { return bytes_.get(); }
    std::size_t size() const { return size_; }
    // What is beyond the old size is not set.
    void resize(std::size_t size) {
        if (size > capacity_) grow(size);
        size_ = size;
    }

  private:
    void grow(std::size_t size) {
        constexpr std::size_t kStep = std::size_t{1} << 20;
        const std::size_t more = std::max(std::min(capacity_, kStep), capacity_ / 64);
        const std::size_t wanted = std::max(size, capacity_ + more);
        void* grown = std::realloc(bytes_.get(), wanted);
        if (!grown) throw std::bad_alloc();
        static_cast<void>(bytes_.release());
        bytes_.reset(static_cast<std::byte*>(grown));
        capacity_ = wanted;
    }
    struct Free {
        void operator()(std::byte* bytes) const { std::free(bytes); }
    };

    std::unique_ptr<std::byte[], Free> bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace qx

#endif
