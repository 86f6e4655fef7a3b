// Reals of more digits than a double holds, and fixed decimals, by one product of 128 bits.
//
// Precondition: a whole field of the shape that each reader names, of at most nineteen digits, and
// a product that decides how its last bit is rounded, as all but some in a thousand do. For
// anything else the answer is false, which says nothing about the field. What is read has the value
// that the careful reader gives, bit for bit.
#ifndef STREAM_EXACT_DECIMALS_H
#define STREAM_EXACT_DECIMALS_H

#include <string_view>

#include "stream/fast_fields.h"

namespace intake::fast {

#if defined(__SIZEOF_INT128__)

__extension__ using Wide = unsigned __int128;

// A power of five: factor * 2^exponent, the factor's highest bit set. It is less than one lower
// than it should be, but for the powers that fit.
struct PowerOfFive {
    uint64_t factor;
    int exponent;
};
inline constexpr int kLowestFive = -116;
inline constexpr int kHighestFive = 82;
inline constexpr auto kPowersOfFive = [] {
    std::array<PowerOfFive, kHighestFive - kLowestFive + 1> powers{};
    const auto keep = [&](int power, Wide factor, int exponent) {
        powers[static_cast<std::size_t>(power - kLowestFive)] = {
            static_cast<uint64_t>(factor >> 64), exponent + 64};
    };
    // The lower 64 bits keep what each step loses away from the upper ones.
    constexpr Wide kOne = Wide{1} << 127;
    Wide factor = kOne;
    int exponent = -127;
    keep(0, factor, exponent);
    for (int power = 1; power <= kHighestFive; ++power) {
        // Five quarters, and a half of that where it would pass the end.
        const Wide quarter = factor >> 2;
        exponent += 2;
        if (factor > ~Wide{0} - quarter) {
            factor = (factor >> 1) + (factor >> 3);
            ++exponent;
        } else {
            factor += quarter;
        }
        keep(power, factor, exponent);
    }
    factor = kOne;
    exponent = -127;
    for (int power = -1; power >= kLowestFive; --power) {
        // Four fifths by way of 2^k fifths, as many as keep the highest bit.
        Wide rest = factor % 5;
        factor /= 5;
        while (factor >> 127 == 0) {
            rest *= 2;
            factor = factor << 1 | (rest >= 5 ? 1 : 0);
            if (rest >= 5) rest -= 5;
            --exponent;
        }
        keep(power, factor, exponent);
    }
    return powers;
}();

// digits * 10^power, rounded once.
inline bool decimalValue(uint64_t digits, int power, double& value) {
    if (power < kLowestFive || power > kHighestFive) return false;
    if (digits == 0) {
        value = 0;
        return true;
    }
    const PowerOfFive& five = kPowersOfFive[static_cast<std::size_t>(power - kLowestFive)];
    const int shift = std::countl_zero(digits);
    const auto high = static_cast<uint64_t>(Wide{digits << shift} * five.factor >> 64);
    // What stands behind the 53 bits that stay. The true product is less than three higher.
    const int dropped = 11 - std::countl_zero(high);
    const uint64_t rest = high & ((uint64_t{1} << dropped) - 1);
    const uint64_t half = uint64_t{1} << (dropped - 1);
    // One comparison: which side of the half the rest is on is past guessing.
    if (half - rest <= 3) return false;
    const auto kept = static_cast<int64_t>((high >> dropped) + (rest > half ? 1 : 0));
    const int exponent = dropped + 64 - shift + five.exponent + power;
    value = static_cast<double>(kept) *
            std::bit_cast<double>(static_cast<uint64_t>(exponent + 1023) << 52);
    return true;
}

#else

inline bool decimalValue(uint64_t, int, double&) { return false; }

#endif

// 24 columns with 17 decimals: blank or sign, a digit, a point, the decimals, "E", a sign and two
// digits.
inline bool readLongReal(const char* field, double& value) {
    if constexpr (!kLowestFirst) return false;
    uint64_t first = eightCharacters(field + 3);
    uint64_t second = eightCharacters(field + 11);
    // The last digits and the exponent, where all is 0 now that is no digit and as it has to be.
    const uint64_t end = eightCharacters(field + 16) ^ word("0000E+00");
    const uint64_t exponentSign = end >> 40 & 0xFF;
    const bool smaller = exponentSign == ('+' ^ '-');
    const uint64_t tail = end & ~(uint64_t{0xFF} << 40);
    const uint64_t others = tail | (tail + word("\x76\x76\x76\x76\x7F\x7F\x76\x76"));
    const auto head = static_cast<unsigned>(field[1] - '0');
    const bool sound = toDigits(first) & toDigits(second) & ((others & eightTimes('\x80')) == 0) &
                       (smaller | (exponentSign == 0)) & (head < 10) & (field[2] == '.') &
                       isSignOrBlank(field[0]);
    if (!sound) return false;
    const uint64_t digits = head * uint64_t{100000000000000000} +
                            valueOfDigits(first) * 1000000000 + valueOfDigits(second) * 10 +
                            (end >> 24 & 0xFF);
    const auto exponent = static_cast<int>(10 * (tail >> 48 & 0xFF) + (tail >> 56));
    double magnitude = 0;
    if (!decimalValue(digits, (smaller ? -exponent : exponent) - 17, magnitude)) {
        return false;
    }
    value = withSign(field[0], magnitude);
    return true;
}

// Any width: blanks, a sign or none, digits with a point or none to the end of the field. Without a
// point the last `decimals` digits are the fraction; the value is shifted down by `scale` powers of
// ten.
inline bool readFixed(std::string_view field, int decimals, int scale, double& value) {
    constexpr int kMostDigits = 19;
    const char* next = field.data();
    const char* const end = next + field.size();
    while (next != end && *next == ' ') ++next;
    if (next == end) return false;
    const char sign = *next;
    if (sign == '-' || sign == '+') ++next;
    uint64_t digits = 0;
    int count = 0;
    int behindPoint = -1;
    for (; next != end; ++next) {
        const auto digit = static_cast<unsigned>(*next - '0');
        if (digit < 10) {
            digits = digits * 10 + digit;
            ++count;
        } else if (*next == '.' && behindPoint < 0) {
            behindPoint = count;
        } else {
            return false;
        }
    }
    if (count == 0 || count > kMostDigits) return false;
    const int fraction = behindPoint < 0 ? decimals : count - behindPoint;
    double magnitude = 0;
    if (!decimalValue(digits, -fraction - scale, magnitude)) return false;
    value = withSign(sign, magnitude);
    return true;
}

}  // namespace intake::fast

#endif
