// Fields as the writer of the format makes them, read eight characters at a time.
//
// Each function reads one shape and answers false for anything else, which says nothing about the
// field: the careful readers of fields.h decide. What is read has the value that they give, bit for
// bit. A field must be there in its whole width.
#ifndef STREAM_FAST_FIELDS_H
#define STREAM_FAST_FIELDS_H

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>

namespace intake::fast {

// The first character lies in the lowest byte.
inline constexpr bool kLowestFirst = std::endian::native == std::endian::little;

constexpr uint64_t eightTimes(char character) {
    return 0x0101010101010101U * static_cast<unsigned char>(character);
}

inline uint64_t eightCharacters(const char* text) {
    uint64_t characters;
    std::memcpy(&characters, text, sizeof characters);
    return characters;
}

// Takes '0' off each character; false if one is no digit.
constexpr bool toDigits(uint64_t& characters) {
    characters ^= eightTimes('0');
    // A digit is 9 at most: with this added it stays below the highest bit.
    return (((characters + eightTimes(0x7F - 9)) | characters) & eightTimes('\x80')) == 0;
}

// The same with blanks, or blanks and a minus, in front of at least one digit: they become zeros.
// Signs come in no order, so that nothing jumps at one.
constexpr bool toDigitsBehindSign(uint64_t& characters, bool& negative) {
    // A digit has this bit, a blank and a minus have not.
    const int start = std::countr_zero(characters & eightTimes(0x10)) & 56;
    // What is in front of the digits, its last character in the highest byte. Two shifts, since
    // there may be nothing.
    const uint64_t front = (characters ^ eightTimes(' ')) << (63 - start) << 1;
    negative = front != 0;
    characters = (characters ^ eightTimes('0')) >> start << start;
    const uint64_t others = (characters + eightTimes(0x7F - 9)) | characters;
    return ((others & eightTimes('\x80')) == 0) &
           (int{front == 0} | int{front == uint64_t{'-' ^ ' '} << 56});
}

// Neighbours become pairs, pairs become two numbers of four digits, and those one of eight.
constexpr uint64_t valueOfDigits(uint64_t digits) {
    constexpr uint64_t kEveryFourth = 0x000000FF000000FFU;
    digits = digits * 10 + (digits >> 8);
    return ((digits & kEveryFourth) * 0x000F424000000064U +
            ((digits >> 16) & kEveryFourth) * 0x0000271000000001U) >>
           32;
}

// Blanks, a minus or none, then digits to the end.
template <class T>
[[gnu::always_inline]] inline bool readEight(uint64_t characters, T& value) {
    bool negative = false;
    if (!toDigitsBehindSign(characters, negative)) return false;
    const uint64_t magnitude = valueOfDigits(characters);
    if constexpr (sizeof(T) < 4) {
        if (magnitude > static_cast<uint64_t>(std::numeric_limits<T>::max())) return false;
    }
    // Eight digits fit any wider integer. Turned over where there is a minus, without a jump.
    const auto signs = -static_cast<T>(negative);
    value = static_cast<T>((static_cast<T>(magnitude) ^ signs) - signs);
    return true;
}

inline constexpr std::size_t kWidestInteger = 15;

// An integer of up to fifteen columns: blanks, a minus or none, then digits to the end of the
// field.
template <std::size_t width, class T>
[[gnu::always_inline]] inline bool readInteger(const char* field, T& value) {
    if constexpr (!kLowestFirst || width == 0 || width > kWidestInteger) {
        return false;
    } else if constexpr (width <= 8) {
        uint64_t last = 0;
        std::memcpy(&last, field, width);
        if constexpr (width < 8) {
            last = last << (64 - 8 * width) | eightTimes(' ') >> (8 * width);
        }
        return readEight(last, value);
    } else {
        constexpr uint64_t kBlanks = eightTimes(' ');
        uint64_t last = eightCharacters(field + width - 8);
        uint64_t first =
            eightCharacters(field) << (8 * (16 - width)) | kBlanks >> (8 * (width - 8));
        if (first == kBlanks) return readEight(last, value);
        bool negative = false;
        if (!toDigitsBehindSign(first, negative) || !toDigits(last)) return false;
        const uint64_t magnitude = valueOfDigits(first) * 100000000 + valueOfDigits(last);
        if (magnitude > static_cast<uint64_t>(std::numeric_limits<T>::max())) return false;
        value = static_cast<T>(negative ? -static_cast<T>(magnitude) : static_cast<T>(magnitude));
        return true;
    }
}

// Signs come in no order, so that nothing jumps at one.
inline bool isSignOrBlank(char sign) {
    return static_cast<bool>(int{sign == ' '} | int{sign == '-'} | int{sign == '+'});
}
inline double withSign(char sign, double magnitude) {
    return std::bit_cast<double>(std::bit_cast<uint64_t>(magnitude) ^ uint64_t{sign == '-'} << 63);
}

// Whether readReal knows such a field.
constexpr bool isRealShape(std::size_t width, int decimals) {
    return kLowestFirst && ((width == 14 && decimals == 7) || (width == 21 && decimals == 14));
}

// Eight characters as they lie in memory.
consteval uint64_t word(const char (&text)[9]) {
    uint64_t characters = 0;
    for (int index = 7; index >= 0; --index) {
        characters = characters << 8 | static_cast<unsigned char>(text[index]);
    }
    return characters;
}

// Not within the function, where each call would make its own.
inline constexpr std::array<double, 23> kPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// What to multiply and then to divide by, for an exponent and its sign; one of them is 1, which
// changes nothing. Where a double does not hold the power, both are no numbers, and so is what
// comes of them.
struct alignas(16) Scale {
    double factor = std::numeric_limits<double>::quiet_NaN();
    double divisor = std::numeric_limits<double>::quiet_NaN();
};
template <int decimals>
inline constexpr auto kScales = [] {
    std::array<std::array<Scale, 100>, 2> scales{};
    for (int exponent = -99; exponent <= 99; ++exponent) {
        const int power = exponent - decimals;
        const auto size = static_cast<std::size_t>(power < 0 ? -power : power);
        if (size >= kPowers.size()) continue;
        const Scale scale = power < 0 ? Scale{1, kPowers[size]} : Scale{kPowers[size], 1};
        scales[exponent < 0][static_cast<std::size_t>(exponent < 0 ? -exponent : exponent)] = scale;
        if (exponent == 0) scales[1][0] = scale;
    }
    return scales;
}();

// Digits and powers of ten that a double holds exactly: one operation rounds once. Anything else
// goes to the library, which cannot fail: a real has room for every exponent of two digits.
inline double scaled(uint64_t digits, int power, const char* first, const char* last) {
    constexpr int kHighestPower = static_cast<int>(kPowers.size()) - 1;
    double magnitude = static_cast<double>(digits);
    if (power < -kHighestPower || power > kHighestPower) {
        std::from_chars(first, last, magnitude);
    } else if (power < 0) {
        magnitude /= kPowers[static_cast<std::size_t>(-power)];
    } else {
        magnitude *= kPowers[static_cast<std::size_t>(power)];
    }
    return magnitude;
}

// A real of 14 or 21 columns with 7 or 14 decimals: blank or sign, a digit, a point, the decimals,
// "E", a sign and two digits.
template <int decimals>
bool readReal(const char* field, double& value) {
    if constexpr (!kLowestFirst) return false;
    constexpr std::size_t kExponent = decimals + 3;
    // The first digits and the end, where all is 0 now that is no digit and as it has to be.
    const uint64_t head = eightCharacters(field + 1) ^ word("0.000000");
    const uint64_t end = eightCharacters(field + kExponent - 4) ^ word("0000E+00");
    const uint64_t exponentSign = end >> 40 & 0xFF;
    const bool smaller = exponentSign == ('+' ^ '-');
    const uint64_t tail = end & ~(uint64_t{0xFF} << 40);
    // A digit is 9 at most, and anything else 0, if adding this leaves the highest bit free.
    uint64_t others = head | (head + word("\x76\x7F\x76\x76\x76\x76\x76\x76")) | tail |
                      (tail + word("\x76\x76\x76\x76\x7F\x7F\x76\x76"));
    // The point drops out, the first digit goes to its place.
    uint64_t digits = head >> 8 | (head & 0xFF);
    if constexpr (decimals == 7) {
        digits = valueOfDigits(digits | end >> 24 << 56);
    } else {
        const uint64_t middle = eightCharacters(field + 9) ^ eightTimes('0');
        others |= middle | (middle + eightTimes(0x7F - 9));
        digits = valueOfDigits(digits << 8) * 100000000 + valueOfDigits(middle);
    }
    if ((others & eightTimes('\x80')) != 0 || !(int{smaller} | int{exponentSign == 0}) ||
        !isSignOrBlank(field[0])) {
        return false;
    }
    const int exponent = static_cast<int>(10 * (tail >> 48 & 0xFF) + (tail >> 56));
    const int power = (smaller ? -exponent : exponent) - decimals;
    value = withSign(field[0], scaled(digits, power, field + 1, field + kExponent + 4));
    return true;
}

}  // namespace intake::fast

#endif
