#include <algorithm>
#include <array>

#include "stream/compressed.h"

namespace intake {

namespace {

constexpr int kNumbersToo = 2;

// Characters of a line that are packed.
constexpr std::size_t kLongestPacked = kCompressedLength - 2;

bool isDigit(char character) { return character >= '0' && character <= '9'; }

class Encoder {
  public:
    Encoder(std::string_view text, int32_t level) : text_(text), level_(level) {}

    std::string_view run() {
        while (more()) {
            if (level_ == kNumbersToo && isDigit(at())) {
                number();
            } else if (at() == ' ') {
                blanks();
            } else {
                if (at() == '~') append('~');
                append(at());
                ++place_;
            }
        }
        return {work_.data(), size_};
    }

  private:
    bool more() const { return place_ < text_.size(); }
    char at(std::size_t ahead = 0) const { return text_[place_ + ahead]; }
    void append(char character) { work_[size_++] = character; }
    void collectDigits() {
        while (more() && isDigit(at())) digits_[digitCount_++] = text_[place_++];
    }

    // A run of 3 to 58 blanks is a token; a longer one is a series of them.
    void blanks() {
        constexpr std::size_t kLongestRun = 58;
        std::size_t count = 0;
        while (count < kLongestRun && place_ + count < text_.size() && at(count) == ' ') ++count;
        place_ += count;
        if (count < 3) {
            for (; count > 0; --count) append(' ');
            return;
        }
        append('~');
        append(' ');
        append(static_cast<char>(32 + count));
    }

    // "E", a sign and two digits, with something behind the four that is no digit.
    bool atExponent() const {
        if (place_ + 3 >= text_.size() || at() != 'E') return false;
        if (at(1) != '+' && at(1) != '-') return false;
        if (!isDigit(at(2)) || !isDigit(at(3))) return false;
        return place_ + 4 >= text_.size() || !isDigit(at(4));
    }

    void number() {
        constexpr std::size_t kMostBeforePoint = 14;
        const std::size_t textStart = place_;
        const std::size_t workStart = size_;
        int code = 33;
        digitCount_ = 0;
        collectDigits();
        if (more() && at() == '.' && digitCount_ <= kMostBeforePoint) {
            ++place_;
            code += static_cast<int>(digitCount_);
            collectDigits();
        }
        if (atExponent()) {
            code += at(1) == '-' ? 30 : 15;
            digits_[digitCount_++] = at(2);
            digits_[digitCount_++] = at(3);
            place_ += 4;
        }
        append('~');
        const std::size_t header = size_;
        append(' ');
        std::size_t index = 0;
        for (; index + 1 < digitCount_; index += 2) {
            const int value = 10 * (digits_[index] - '0') + (digits_[index + 1] - '0');
            if (value > 91) append('}');
            append(static_cast<char>(value > 91 ? value - 59 : value + 33));
        }
        if (digitCount_ % 2 == 1) {
            code += 45;
            append(static_cast<char>(10 * (digits_[index] - '0') + 33));
        }
        work_[header] = static_cast<char>(code);
        if (more() && at() != ' ') append('~');
        if (size_ - workStart > place_ - textStart) {
            size_ = workStart;
            for (std::size_t each = textStart; each < place_; ++each) append(text_[each]);
        }
    }

    std::string_view text_;
    int32_t level_;
    std::size_t place_ = 0;
    // Filled as far as the counts say. What is written is at most twice as long as its text, which
    // "~" alone is, and a number that is taken back four characters more.
    std::array<char, kCompressedLength> digits_;
    std::size_t digitCount_ = 0;
    std::array<char, 2 * kLongestPacked + 4> work_;
    std::size_t size_ = 0;
};

}  // namespace

std::size_t CMPLIN(std::span<const char> line, int32_t level,
                   std::span<char, kCompressedLength> work) {
    Encoder encoder(qx::trimText(line.data(), std::min(line.size(), kLongestPacked)), level);
    const std::string_view packed = encoder.run().substr(0, work.size());
    std::copy(packed.begin(), packed.end(), work.begin());
    return packed.size();
}

void CMPLIN(std::span<const char> line, int32_t level, CompressedLine& work, int32_t& count) {
    const std::size_t size =
        CMPLIN(line, level, std::span<char, kCompressedLength>(work.data(), kCompressedLength));
    std::fill_n(work.data() + size, kCompressedLength - size, ' ');
    count = static_cast<int32_t>(size);
}

}  // namespace intake
