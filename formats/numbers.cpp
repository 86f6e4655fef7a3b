#include "formats/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace formats {

namespace {

template <class T>
void append(std::string& text, T value) {
    std::array<char, 40> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    text.append(digits.data(), end);
}

// "00" "01" ... "99"
constexpr auto kPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

}  // namespace

void appendInteger(std::string& text, int64_t value) { append(text, value); }
void appendShortest(std::string& text, double value) { append(text, value); }
void appendShortest(std::string& text, float value) { append(text, value); }

void appendReal(std::string& text, double value, const Column& column) {
    if (column.width == 4) {
        append(text, static_cast<float>(value));
    } else {
        append(text, value);
    }
}

void appendSevenDecimals(std::string& text, double value) {
    constexpr int kDecimals = 7;
    constexpr double kScale = 1e7;
    constexpr double kMost = 9e8;  // beyond it reals have no seventh decimal to round to
    if (!(std::abs(value) < kMost)) return append(text, value);

    const auto scaled = static_cast<int64_t>(std::nearbyint(value * kScale));
    uint64_t rest = static_cast<uint64_t>(scaled < 0 ? -scaled : scaled);
    // From the last digit to the first: seven of the fraction, the point, the whole, the sign.
    std::array<char, 32> digits;
    char* const end = digits.data() + digits.size();
    char* start = end;
    char* last = end;
    const auto pair = [&](uint64_t two) {
        *--start = kPairs[2 * two + 1];
        *--start = kPairs[2 * two];
    };
    uint64_t fraction = rest % static_cast<uint64_t>(kScale);
    rest /= static_cast<uint64_t>(kScale);
    if (fraction == 0) {
        last = start;
    } else {
        *--start = static_cast<char>('0' + fraction % 10);
        fraction /= 10;
        for (int i = 1; i < kDecimals; i += 2, fraction /= 100) pair(fraction % 100);
        while (last[-1] == '0') --last;
        *--start = '.';
    }
    for (; rest >= 100; rest /= 100) pair(rest % 100);
    if (rest >= 10) {
        pair(rest);
    } else {
        *--start = static_cast<char>('0' + rest);
    }
    if (scaled < 0) *--start = '-';
    text.append(start, last);
}

void appendDate(std::string& text, const Date& date) {
    std::array<char, 40> digits{};
    std::snprintf(digits.data(), digits.size(), "%04d-%02d-%02d", date.year, date.month, date.day);
    text += digits.data();
}

}  // namespace formats
