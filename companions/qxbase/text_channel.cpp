#include "companions/qxbase/text_channel.h"

#include <algorithm>
#include <cstring>

#include "host/cpp/fixed_text.h"

namespace qxbase {

TextReader::TextReader(store::File file) : file_(std::move(file)) {
    const int64_t size = std::max<int64_t>(file_.sizeWhenOpened(), 0);
    // A small file needs a small block; one byte more shows its end at once.
    block_.resize(static_cast<std::size_t>(
        std::clamp<int64_t>(size + 1, 4096, static_cast<int64_t>(kBlockBytes))));
    window_ = {block_.data(), block_.data()};
}

bool TextReader::refill() {
    blockStart_ += window_.end - block_.data();
    window_ = {block_.data(), block_.data()};
    const int64_t count = file_.readAt(blockStart_, std::as_writable_bytes(std::span(block_)));
    if (count < 0) failed_ = true;
    if (count <= 0) return false;
    window_.end += count;
    return true;
}

bool TextReader::readUsual(char* line, int32_t& count) {
    const char* start = window_.next;
    if (left() < kUsualLength || failed_) return false;
    const void* found = std::memchr(start, '\n', left());
    if (!found) return false;
    const auto size = static_cast<std::size_t>(static_cast<const char*>(found) - start);
    if (size > kUsualLength) return false;
    // A copy of a length that is known is a few moves. What came along of the next lines is blanked
    // in steps, of which the last two may overlap.
    std::memcpy(line, start, kUsualLength);
    constexpr std::size_t kStep = 8;
    constexpr std::size_t kLastStep = kUsualLength - kStep;
    if (size <= kLastStep) {
        for (std::size_t at = size; at < kLastStep; at += kStep) std::memset(line + at, ' ', kStep);
        std::memset(line + kLastStep, ' ', kStep);
    } else {
        for (std::size_t at = size; at < kUsualLength; ++at) line[at] = ' ';
    }
    count = static_cast<int32_t>(size);
    window_.next += size + 1;
    return true;
}

TextReader::Result TextReader::read(char* line, std::size_t length, std::size_t& count,
                                    bool inPieces) {
    count = 0;
    if (left() == 0 && !refill()) {
        std::memset(line, ' ', length);
        return failed_ ? Result::kFailed : Result::kEnd;
    }
    for (;;) {
        const char* start = window_.next;
        const void* found = std::memchr(start, '\n', left());
        const std::size_t size =
            found ? static_cast<std::size_t>(static_cast<const char*>(found) - start) : left();
        const std::size_t kept = std::min(size, length - count);
        std::memcpy(line + count, start, kept);
        count += kept;
        if (inPieces && kept < size) {
            window_.next += kept;
            return Result::kPiece;
        }
        window_.next += size;
        if (found) {
            ++window_.next;
            break;
        }
        // The line goes on in the next block, or ends with the file.
        if (!refill()) break;
    }
    std::memset(line + count, ' ', length - count);
    return failed_ ? Result::kFailed : Result::kLine;
}

void TextReader::rewind() {
    blockStart_ = 0;
    window_ = {block_.data(), block_.data()};
    failed_ = false;
}

bool TextWriter::write(std::string_view text, bool endsLine) {
    appender_.append(std::as_bytes(std::span(text)));
    if (endsLine) *appender_.reserve(1) = std::byte{'\n'};
    return !appender_.failed();
}

}  // namespace qxbase
