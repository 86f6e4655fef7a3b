// Runs of integers and texts of any length in file byte order, for the small files that describe
// tables. A text is led by its length. Reading never passes the end: what is not there is not ok.
#ifndef COMPANIONS_QXFEAT_PACKED_WORDS_H
#define COMPANIONS_QXFEAT_PACKED_WORDS_H

#include <algorithm>
#include <array>
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
        const std::size_t end = bytes_.size();
        bytes_.resize(end + text.size());
        if (!text.empty()) std::memcpy(bytes_.data() + end, text.data(), text.size());
        return *this;
    }
    std::span<const std::byte> bytes() const { return bytes_; }

  private:
    std::vector<std::byte> bytes_;
};

// Reads a file in pieces, so that it takes no more memory than what is kept of it.
class PackedReader {
  public:
    // Not ok if the file cannot be read or does not begin with the mark.
    PackedReader(const std::string& path, std::string_view mark) : PackedReader(path, int64_t{0}) {
        std::string start;
        readText(start, mark.size());
        ok_ = ok_ && start == mark;
    }
    // From a position on.
    PackedReader(const std::string& path, int64_t position)
        : file_(store::File::read(path)), pieceStart_(position), ok_(file_.isOpen()) {
        constexpr int64_t kMostPiece = 64 * 1024;
        const int64_t left = file_.sizeWhenOpened() - position;
        if (ok_) piece_.resize(static_cast<std::size_t>(std::clamp<int64_t>(left, 1, kMostPiece)));
    }
    // What the file was when it was opened.
    const store::File::Identity& identity() const { return file_.identityWhenOpened(); }
    PackedReader& operator>>(int32_t& value) {
        if (ok_ && end_ - next_ >= sizeof value) {
            value = store::get<int32_t>(piece_.data() + next_);
            next_ += sizeof value;
            return *this;
        }
        std::array<std::byte, sizeof value> bytes;
        if (take(bytes)) value = store::get<int32_t>(bytes.data());
        return *this;
    }
    // A text of at most so many bytes; a longer one is not ok. Of one that the file ends in it
    // gives what is there.
    PackedReader& text(std::string& text, std::size_t most) {
        int32_t length = -1;
        *this >> length;
        ok_ = ok_ && length >= 0 && static_cast<std::size_t>(length) <= most;
        if (ok_) readText(text, static_cast<std::size_t>(length));
        return *this;
    }
    bool ok() const { return ok_; }
    // Not ok because there is no more.
    bool atEnd() const { return atEnd_; }
    // Whether there is nothing but zeros up to the end of the file; it is read by that.
    bool onlyZerosFollow() {
        for (; ok_; refill()) {
            const auto rest = std::span(piece_).subspan(next_, end_ - next_);
            if (!std::ranges::all_of(rest, [](std::byte each) { return each == std::byte{}; })) {
                return false;
            }
        }
        return atEnd_;
    }
    // Where the next number or text begins.
    int64_t position() const { return pieceStart_ + static_cast<int64_t>(next_); }

  private:
    void readText(std::string& text, std::size_t length) {
        if (end_ - next_ >= length) {
            text.assign(reinterpret_cast<const char*>(piece_.data() + next_), length);
            next_ += length;
            return;
        }
        text.resize(length);
        taken_ = 0;
        take(std::as_writable_bytes(std::span(text)));
        text.resize(taken_);
    }
    bool take(std::span<std::byte> bytes) {
        while (ok_ && !bytes.empty()) {
            if (next_ == end_) refill();
            const std::size_t count = std::min(bytes.size(), end_ - next_);
            taken_ += count;
            std::copy_n(piece_.data() + next_, count, bytes.data());
            next_ += count;
            bytes = bytes.subspan(count);
        }
        return ok_;
    }
    void refill() {
        pieceStart_ += static_cast<int64_t>(end_);
        const int64_t count = file_.readAt(pieceStart_, piece_);
        next_ = 0;
        end_ = static_cast<std::size_t>(std::max<int64_t>(count, 0));
        ok_ = count > 0;
        atEnd_ = count == 0;
    }

    store::File file_;
    std::vector<std::byte> piece_;
    int64_t pieceStart_ = 0;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
    std::size_t taken_ = 0;
    bool ok_ = false;
    bool atEnd_ = false;
};

}  // namespace qxfeat

#endif
