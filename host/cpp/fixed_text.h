// The blank-padded text buffer: the only code that pads, cuts or measures one.
#ifndef HOST_CPP_FIXED_TEXT_H
#define HOST_CPP_FIXED_TEXT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "host/qx_api.h"

namespace qx {

// Copies text to a buffer, cut or padded with blanks to its length.
inline void padText(char* buffer, std::size_t length, std::string_view text) {
    const std::size_t kept = text.size() < length ? text.size() : length;
    // An empty text may have no address.
    if (kept != 0) std::memmove(buffer, text.data(), kept);
    std::memset(buffer + kept, ' ', length - kept);
}

// The text of a buffer without its trailing blanks.
inline std::string_view trimText(const char* buffer, std::size_t length) {
    // Long runs eight at a time.
    uint64_t eight;
    while (length >= sizeof eight) {
        std::memcpy(&eight, buffer + length - sizeof eight, sizeof eight);
        if (eight != 0x2020202020202020U) break;
        length -= sizeof eight;
    }
    while (length > 0 && buffer[length - 1] == ' ') --length;
    return {buffer, length};
}

inline std::string_view trimText(std::string_view text) {
    return trimText(text.data(), text.size());
}

// The same for a text argument of the C edge, whose length may be anything.
inline std::string_view textArgument(const char* buffer, int32_t length) {
    return length > 0 ? trimText(buffer, static_cast<std::size_t>(length)) : std::string_view{};
}

inline void textResult(char* buffer, int32_t length, std::string_view text) {
    if (length > 0) padText(buffer, static_cast<std::size_t>(length), text);
}

// The same for a path or a name of which a part would be another one: blank if it does not fit.
inline void wholeResult(char* buffer, int32_t length, std::string_view text) {
    const bool fits = length > 0 && text.size() <= static_cast<std::size_t>(length);
    textResult(buffer, length, fits ? text : std::string_view());
}

// A buffer of N characters, blank at the start.
template <std::size_t N>
class FixedText {
  public:
    static constexpr std::size_t kLength = N;

    FixedText() { characters_.fill(' '); }
    FixedText(std::string_view text) { assign(text); }  // NOLINT: texts convert freely
    FixedText(const char* text) : FixedText(std::string_view(text)) {}  // NOLINT
    template <std::size_t M>
    FixedText(const FixedText<M>& text) : FixedText(text.view()) {}  // NOLINT

    void assign(std::string_view text) { padText(characters_.data(), N, text); }

    char* data() { return characters_.data(); }
    const char* data() const { return characters_.data(); }
    static constexpr std::size_t size() { return N; }

    // Without trailing blanks.
    std::string_view view() const { return trimText(characters_.data(), N); }
    // All N characters.
    std::string_view full() const { return {characters_.data(), N}; }
    bool blank() const { return view().empty(); }

    // Columns count from 1; what lies behind the buffer reads as nothing.
    std::string_view columns(std::size_t first, std::size_t last) const {
        if (first > N) return {};
        return full().substr(first - 1, last - first + 1);
    }
    char& operator[](std::size_t index) { return characters_[index]; }
    char operator[](std::size_t index) const { return characters_[index]; }

    bool startsWith(std::string_view text) const { return full().substr(0, text.size()) == text; }
    // Equal but for trailing blanks.
    friend bool operator==(const FixedText& left, std::string_view right) {
        // Most texts differ at their front.
        return left.startsWith(right.substr(0, 1)) && left.view() == trimText(right);
    }
    friend bool operator==(const FixedText& left, const char* right) {
        return left == std::string_view(right);
    }
    friend bool operator==(const FixedText& left, const FixedText& right) {
        return left.characters_ == right.characters_;
    }

  private:
    std::array<char, N> characters_;
};

// A path or dataset name.
using Name = FixedText<QX_NAME_LENGTH>;

}  // namespace qx

#endif
