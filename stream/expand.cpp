#include <algorithm>
#include <array>
#include <cstring>

#include "stream/compressed.h"

namespace intake {

namespace {

// Decoded text. Whatever comes in, what leaves is at most one line; the room behind that is for a
// number token that begins inside the line and is put in order only when it is whole.
class Output {
  public:
    explicit Output(std::size_t limit) : limit_(std::min(limit, kLimit)) {}

    std::size_t size() const { return size_; }
    void append(char character) {
        if (size_ < text_.size()) text_[size_++] = character;
    }
    void appendBlanks(int count) {
        if (count <= 0 || size_ >= limit_) return;
        const std::size_t blanks = std::min(static_cast<std::size_t>(count), limit_ - size_);
        std::memset(text_.data() + size_, ' ', blanks);
        size_ += blanks;
    }
    void removeLast() { --size_; }
    void insert(std::size_t place, char character) {
        if (size_ == text_.size()) return;
        std::memmove(text_.data() + place + 1, text_.data() + place, size_ - place);
        text_[place] = character;
        ++size_;
    }
    std::string_view view() const { return {text_.data(), std::min(size_, limit_)}; }

  private:
    static constexpr std::size_t kLimit = 512;
    static constexpr std::size_t kLongestToken = 2 * kCompressedLength + 3;
    std::array<char, kLimit + kLongestToken> text_;
    std::size_t limit_;
    std::size_t size_ = 0;
};

class Decoder {
  public:
    Decoder(std::string_view text, Output& output) : text_(text), output_(output) {}

    void run() {
        while (more()) {
            if (at() != '~') {
                output_.append(static_cast<char>(at()));
                ++place_;
                continue;
            }
            ++place_;
            // A lone "~" at the end is dropped.
            if (!more()) return;
            if (at() >= 33 && at() <= 123) {
                number();
            } else {
                escape();
            }
        }
    }

  private:
    bool more() const { return place_ < text_.size(); }
    int at() const { return static_cast<unsigned char>(text_[place_]); }

    void escape() {
        if (at() == ' ') {
            ++place_;
            if (!more()) return;
            output_.appendBlanks(at() - 32);
            ++place_;
        } else if (at() == '~') {
            output_.append('~');
            ++place_;
        }
        // Any other character is taken as plain text by the loop.
    }

    void number() {
        const std::size_t start = output_.size();
        int header = at() - 33;
        ++place_;
        while (more() && at() != ' ' && at() != '~') {
            int value = at() - 33;
            ++place_;
            if (value == 92) {
                if (!more()) break;
                value = at() + 59;
                ++place_;
            }
            output_.append(static_cast<char>('0' + value / 10));
            output_.append(static_cast<char>('0' + value % 10));
        }
        // The padding digit goes first, then the point, then the exponent.
        if (header >= 45) {
            header -= 45;
            if (output_.size() > start) output_.removeLast();
        }
        const auto pointBehind = static_cast<std::size_t>(header % 15);
        if (pointBehind != 0) {
            output_.insert(std::min(start + pointBehind, output_.size()), '.');
        }
        if (header >= 15 && output_.size() >= start + 2) {
            output_.insert(output_.size() - 2, 'E');
            output_.insert(output_.size() - 2, header < 30 ? '+' : '-');
        }
        // The "~" that ended the token belongs to it, unless it begins a run of blanks.
        const bool terminator = place_ + 1 < text_.size() && at() == '~' && text_[place_ + 1] != ' ';
        if (terminator) ++place_;
    }

    std::string_view text_;
    Output& output_;
    std::size_t place_ = 0;
};

}  // namespace

void DCMLIN(const CompressedLine& work, std::span<char> line, int32_t& count) {
    Output output(line.size());
    Decoder(work.view(), output).run();
    const std::string_view text = output.view();
    qx::padText(line.data(), line.size(), text);
    count = static_cast<int32_t>(std::min(text.size(), line.size()));
}

}  // namespace intake
