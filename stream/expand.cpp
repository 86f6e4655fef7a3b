#include <algorithm>
#include <array>
#include <cstring>

#include "stream/compressed.h"

namespace intake {

namespace {

constexpr int kPairs = 100;

constexpr std::array<char, 2 * kPairs> kDigitPairs = [] {
    std::array<char, 2 * kPairs> pairs{};
    for (std::size_t value = 0; value < kPairs; ++value) {
        pairs[2 * value] = static_cast<char>('0' + value / 10);
        pairs[2 * value + 1] = static_cast<char>('0' + value % 10);
    }
    return pairs;
}();

class Decoder {
  public:
    // What is decoded beyond the limit is not asked for.
    Decoder(std::string_view text, std::size_t limit)
        : next_(text.data()), last_(text.data() + text.size()), limit_(decoded_.data() + limit) {}

    std::string_view run() {
        while (next_ != last_) {
            const char* escape = std::find(next_, last_, '~');
            out_ = std::copy(next_, escape, out_);
            // A lone "~" at the end is dropped.
            if (last_ - escape < 2) break;
            next_ = escape + 1;
            if (at() >= 33 && at() <= 123) {
                number();
            } else {
                escaped();
            }
        }
        return {decoded_.data(),
                static_cast<std::size_t>(std::min<char*>(out_, limit_) - decoded_.data())};
    }

  private:
    bool more() const { return next_ != last_; }
    int at() const { return static_cast<unsigned char>(*next_); }

    void escaped() {
        if (at() == ' ') {
            ++next_;
            if (!more()) return;
            const int count = at() - 32;
            ++next_;
            if (count > 0 && out_ < limit_) {
                out_ = std::fill_n(out_, std::min<std::ptrdiff_t>(count, limit_ - out_), ' ');
            }
        } else if (at() == '~') {
            *out_++ = '~';
            ++next_;
        } else {
            // The escape is gone and the character counts as plain text.
            *out_++ = *next_++;
        }
    }

    // A pair of a sound file is below 100. What a damaged one holds is decoded all the same.
    void pair(int value) {
        if (value >= 0 && value < kPairs) {
            std::memcpy(out_, &kDigitPairs[static_cast<std::size_t>(2 * value)], 2);
        } else {
            out_[0] = static_cast<char>('0' + value / 10);
            out_[1] = static_cast<char>('0' + value % 10);
        }
        out_ += 2;
    }

    void number() {
        char* const start = out_;
        int header = at() - 33;
        ++next_;
        while (more() && at() != ' ' && at() != '~') {
            int value = at() - 33;
            ++next_;
            if (value == 92) {
                if (!more()) break;
                value = at() + 59;
                ++next_;
            }
            pair(value);
        }
        // The padding digit goes first, then the point, then the exponent.
        if (header >= 45) {
            header -= 45;
            if (out_ != start) --out_;
        }
        const std::ptrdiff_t digits = out_ - start;
        const int pointBehind = header % 15;
        if (pointBehind != 0) {
            char* const point = start + std::min<std::ptrdiff_t>(pointBehind, digits);
            std::memmove(point + 1, point, static_cast<std::size_t>(out_ - point));
            *point = '.';
            ++out_;
        }
        if (header >= 15 && digits >= 2) {
            out_[0] = out_[-2];
            out_[1] = out_[-1];
            out_[-2] = 'E';
            out_[-1] = header < 30 ? '+' : '-';
            out_ += 2;
        }
        // The "~" that ended the token belongs to it, unless it begins a run of blanks.
        if (last_ - next_ >= 2 && next_[0] == '~' && next_[1] != ' ') ++next_;
    }

    // Blanks stop at the limit. Anything else gives at most 2 characters for one of the text, and
    // a token 3 more for its 2 of escape and header.
    static constexpr std::size_t kRoom = kLongestDecoded + 4 * kCompressedLength;
    std::array<char, kRoom> decoded_;
    const char* next_;
    const char* last_;
    char* out_ = decoded_.data();
    char* limit_;
};

}  // namespace

void DCMLIN(std::string_view work, std::span<char> line, int32_t& count) {
    const std::string_view text = qx::trimText(work.substr(0, kCompressedLength));
    Decoder decoder(text, std::min(line.size(), kLongestDecoded));
    const std::string_view decoded = decoder.run();
    qx::padText(line.data(), line.size(), decoded);
    count = static_cast<int32_t>(decoded.size());
}

}  // namespace intake
