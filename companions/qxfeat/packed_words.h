// Runs of integers and texts of any length in file byte order, for the small files that describe
// tables. A text is led by its length. Reading never passes the end: what is not there is not ok.
#ifndef COMPANIONS_QXFEAT_PACKED_WORDS_H
#define COMPANIONS_QXFEAT_PACKED_WORDS_H

#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "companions/store/file.h"
#include "companions/store/words.h"

namespace qxfeat {

class PackedWriter {
  public:
    PackedWriter& operator<<(int32_t value) {
        bytes_.resize(bytes_.size() + sizeof value);
        store::put(bytes_.data() + bytes_.size() - sizeof value, value);
        return *this;
    }
    PackedWriter& operator<<(std::string_view text) {
        *this << static_cast<int32_t>(text.size());
        return raw(text);
    }
    PackedWriter& raw(std::string_view text) {
        const auto bytes = std::as_bytes(std::span(text));
        bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
        return *this;
    }
    std::span<const std::byte> bytes() const { return bytes_; }

  private:
    std::vector<std::byte> bytes_;
};

class PackedReader {
  public:
    // Takes a whole file in; not ok if it cannot be read or does not begin with the mark.
    PackedReader(const std::string& path, std::string_view mark) {
        const store::File file = store::File::read(path);
        const int64_t size = file.isOpen() ? file.size() : -1;
        if (size < static_cast<int64_t>(mark.size())) return;
        bytes_.resize(static_cast<std::size_t>(size));
        ok_ = file.readAt(0, bytes_) == size &&
              std::memcmp(bytes_.data(), mark.data(), mark.size()) == 0;
        next_ = mark.size();
    }
    PackedReader& operator>>(int32_t& value) {
        if (const std::byte* place = take(sizeof value)) value = store::get<int32_t>(place);
        return *this;
    }
    PackedReader& operator>>(std::string& text) {
        int32_t length = -1;
        *this >> length;
        if (length < 0) ok_ = false;
        const std::byte* place = ok_ ? take(static_cast<std::size_t>(length)) : nullptr;
        if (place) {
            text.assign(reinterpret_cast<const char*>(place), static_cast<std::size_t>(length));
        }
        return *this;
    }
    bool ok() const { return ok_; }
    // Where the next number or text begins.
    int64_t position() const { return static_cast<int64_t>(next_); }

  private:
    const std::byte* take(std::size_t count) {
        if (!ok_ || bytes_.size() - next_ < count) {
            ok_ = false;
            return nullptr;
        }
        next_ += count;
        return bytes_.data() + (next_ - count);
    }

    std::vector<std::byte> bytes_;
    std::size_t next_ = 0;
    bool ok_ = false;
};

}  // namespace qxfeat

#endif
