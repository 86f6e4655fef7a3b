#include "stream/fields.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>

#include "stream/reader_state.h"
#include "stream/report.h"

namespace intake {

namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

// The field without its blanks. A field is a part of one line or record text; what is longer than
// any number that is worth reading is cut, which then fails or changes nothing.
class Squeezed {
  public:
    explicit Squeezed(std::string_view field) {
        for (const char character : field) {
            if (character == ' ') continue;
            if (size_ == characters_.size()) {
                tooLong_ = true;
                return;
            }
            characters_[size_++] = character;
        }
    }
    std::string_view view() const { return {characters_.data(), size_}; }
    bool tooLong() const { return tooLong_; }

  private:
    std::array<char, 512> characters_;
    std::size_t size_ = 0;
    bool tooLong_ = false;
};

bool equalLetters(std::string_view text, std::string_view upper) {
    if (text.size() != upper.size()) return false;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char letter = text[index] >= 'a' && text[index] <= 'z'
                                ? static_cast<char>(text[index] - 'a' + 'A')
                                : text[index];
        if (letter != upper[index]) return false;
    }
    return true;
}

bool parseSpecial(std::string_view text, bool negative, double& value) {
    if (equalLetters(text, "NAN")) {
        value = std::numeric_limits<double>::quiet_NaN();
    } else if (equalLetters(text, "INF") || equalLetters(text, "INFINITY")) {
        value = std::numeric_limits<double>::infinity();
    } else {
        return false;
    }
    if (negative) value = -value;
    return true;
}

// The exponent behind the mantissa; false if the text is none. Beyond what matters it saturates.
bool parseExponent(std::string_view text, int& exponent) {
    const bool letter = !text.empty() && (text.front() == 'E' || text.front() == 'D' ||
                                          text.front() == 'e' || text.front() == 'd');
    if (letter) text.remove_prefix(1);
    bool negative = false;
    if (!text.empty() && (text.front() == '+' || text.front() == '-')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    } else if (!letter) {
        return false;
    }
    if (text.empty()) return false;
    constexpr int kEnough = 100000;
    exponent = 0;
    for (const char character : text) {
        if (!isDigit(character)) return false;
        if (exponent < kEnough) exponent = exponent * 10 + (character - '0');
    }
    if (negative) exponent = -exponent;
    return true;
}

// The value of digits times ten to a power, rounded once.
double composedReal(std::string_view digits, int power, bool negative) {
    // One form that the library converts exactly: digits, "E", power.
    std::array<char, 640> text;
    char* end = text.data();
    for (const char digit : digits) *end++ = digit;
    *end++ = 'E';
    end = std::to_chars(end, text.data() + text.size(), power).ptr;
    double value = 0;
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec == std::errc::result_out_of_range) {
        // Infinity where the decimal value is large, zero where it is small. What counts is where
        // the first digit stands that is not zero.
        const std::size_t first = digits.find_first_not_of('0');
        const bool large =
            first != std::string_view::npos && static_cast<int>(digits.size() - first) + power > 0;
        value = large ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return negative ? -value : value;
}

}  // namespace

bool parseInteger(std::string_view field, int64_t& value) {
    int64_t result = 0;
    bool negative = false;
    bool signSeen = false;
    bool digitSeen = false;
    for (const char character : field) {
        if (character == ' ') continue;
        if (isDigit(character)) {
            digitSeen = true;
            const int digit = character - '0';
            // Counted downwards, since the lowest value has no positive twin.
            if (__builtin_mul_overflow(result, 10, &result) ||
                __builtin_sub_overflow(result, digit, &result)) {
                return false;
            }
        } else if ((character == '-' || character == '+') && !signSeen && !digitSeen) {
            signSeen = true;
            negative = character == '-';
        } else {
            return false;
        }
    }
    if (signSeen && !digitSeen) return false;
    if (!negative && result == std::numeric_limits<int64_t>::min()) return false;
    value = negative ? result : -result;
    return true;
}

bool parseInteger(std::string_view field, int32_t& value) {
    int64_t wide = 0;
    if (!parseInteger(field, wide) || wide < INT32_MIN || wide > INT32_MAX) return false;
    value = static_cast<int32_t>(wide);
    return true;
}

bool parseInteger(std::string_view field, int16_t& value) {
    int64_t wide = 0;
    if (!parseInteger(field, wide) || wide < INT16_MIN || wide > INT16_MAX) return false;
    value = static_cast<int16_t>(wide);
    return true;
}

bool parseReal(std::string_view field, int decimals, int scale, double& value) {
    const Squeezed squeezed(field);
    if (squeezed.tooLong()) return false;
    std::string_view text = squeezed.view();
    if (text.empty()) {
        value = 0;
        return true;
    }
    bool negative = false;
    if (text.front() == '+' || text.front() == '-') {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    if (!text.empty() && !isDigit(text.front()) && text.front() != '.') {
        return parseSpecial(text, negative, value);
    }
    std::array<char, 512> digits;
    std::size_t digitCount = 0;
    std::size_t fraction = 0;
    bool pointSeen = false;
    std::size_t index = 0;
    for (; index < text.size(); ++index) {
        if (isDigit(text[index])) {
            digits[digitCount++] = text[index];
            if (pointSeen) ++fraction;
        } else if (text[index] == '.' && !pointSeen) {
            pointSeen = true;
        } else {
            break;
        }
    }
    if (digitCount == 0) return false;
    int power = pointSeen ? -static_cast<int>(fraction) : -decimals;
    if (index < text.size()) {
        int exponent = 0;
        if (!parseExponent(text.substr(index), exponent)) return false;
        power += exponent;
    } else {
        power -= scale;
    }
    value = composedReal({digits.data(), digitCount}, power, negative);
    return true;
}

bool parseLogical(std::string_view field, bool& value) {
    const std::size_t first = field.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        value = false;
        return true;
    }
    char letter = field[first];
    if (letter == '.' && first + 1 < field.size()) letter = field[first + 1];
    if (letter != 'T' && letter != 't' && letter != 'F' && letter != 'f') return false;
    value = letter == 'T' || letter == 't';
    return true;
}

void failedField(std::string_view field, std::size_t firstColumn, int64_t linesBack) {
    const std::string columns =
        std::to_string(firstColumn) + " to " + std::to_string(firstColumn + field.size() - 1);
    const std::string place =
        std::to_string(reader.lineNumber - linesBack) + " of " + std::string(reader.IMPNAM.view());
    fatal("Could not read \"%1%\" in columns %2% of line %3%", field, std::string_view(columns),
          std::string_view(place));
}

double realField(std::string_view field, std::size_t firstColumn, int decimals, int scale) {
    double value = 0;
    if (!readReal(field, decimals, scale, value)) failedField(field, firstColumn);
    return value;
}

}  // namespace intake
