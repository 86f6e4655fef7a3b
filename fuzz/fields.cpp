// The readers of integer and real fields, held against the C library's on the same text, and the
// fast readers of single shapes against them.
#include "stream/fields.h"

#include <array>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

#include "fuzz/scratch.h"
#include "stream/fast_integers.h"
#include "stream/fast_reals.h"

namespace {

std::string withoutBlanks(std::string_view field) {
    std::string text;
    for (const char character : field) {
        if (character != ' ') text += character;
    }
    return text;
}

std::optional<int64_t> integerOpinion(const std::string& text) {
    if (text.empty()) return 0;
    if (text.find_first_not_of("0123456789+-") != std::string::npos) return std::nullopt;
    char* end = nullptr;
    errno = 0;
    const long long value = std::strtoll(text.c_str(), &end, 10);
    if (errno != 0 || end != text.c_str() + text.size()) return std::nullopt;
    return value;
}

bool isSpecial(std::string_view text) {
    return text.find_first_not_of("+-NnAaIiFfTtYy") == std::string_view::npos;
}

// Sets the implied point and exponent into the text and lets strtod read the result.
std::optional<double> realOpinion(std::string text, int decimals, int scale) {
    if (text.empty()) return 0.0;
    char* end = nullptr;
    if (isSpecial(text)) {
        const double value = std::strtod(text.c_str(), &end);
        if (end != text.c_str() + text.size()) return std::nullopt;
        return value;
    }
    const std::size_t start = text[0] == '+' || text[0] == '-' ? 1 : 0;
    std::size_t stop = text.find_first_not_of("0123456789.", start);
    std::string mantissa = text.substr(start, stop - start);
    std::string exponent = stop == std::string::npos ? "" : text.substr(stop);
    if (exponent.empty()) {
        exponent = std::to_string(-scale);
    } else {
        if (std::string_view("EeDd").find(exponent[0]) != std::string_view::npos) {
            exponent.erase(0, 1);
            if (!exponent.empty() && exponent[0] >= '0' && exponent[0] <= '9')
                exponent.insert(0, "+");
        }
        if (exponent.size() < 2 || (exponent[0] != '+' && exponent[0] != '-') ||
            exponent.find_first_not_of("0123456789", 1) != std::string::npos) {
            return std::nullopt;
        }
    }
    if (mantissa.find_first_of("0123456789") == std::string::npos) return std::nullopt;
    if (mantissa.find('.') == std::string::npos) {
        const auto digits = static_cast<std::size_t>(decimals);
        if (mantissa.size() < digits) mantissa.insert(0, digits - mantissa.size(), '0');
        mantissa.insert(mantissa.size() - digits, ".");
    }
    const std::string number = text.substr(0, start) + mantissa + "e" + exponent;
    const double value = std::strtod(number.c_str(), &end);
    if (end != number.c_str() + number.size()) return std::nullopt;
    return value;
}

bool sameValue(double left, double right) {
    return (std::isnan(left) && std::isnan(right)) ||
           std::bit_cast<uint64_t>(left) == std::bit_cast<uint64_t>(right);
}

// The readers of one shape each: what they take has the value that the careful ones give.
template <std::size_t width>
void readIntegerFast(std::string_view field) {
    int32_t value = 0;
    int32_t expected = 0;
    if (field.size() != width || !intake::fast::readInteger<width>(field.data(), value)) return;
    fuzz::require(intake::parseInteger(field, expected) && value == expected, "a fast integer");
}

void readRealFast(std::string_view field, int decimals, bool (*read)(const char*, double&)) {
    double value = 0;
    double expected = 0;
    if (static_cast<int>(field.size()) != decimals + 7 || !read(field.data(), value)) return;
    fuzz::require(intake::parseReal(field, decimals, 1, expected), "a fast real is one");
    fuzz::require(sameValue(value, expected), "the value of a fast real");
}

// A run of the same field but for its last digit.
template <std::size_t count, class T>
void readRun(std::string_view field, bool (*read)(const char*, T*),
             bool (*parse)(std::string_view, T&)) {
    std::string fields[count];
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
        fields[index] = field;
        if (index != 0 && field.back() == '0')
            fields[index].back() = static_cast<char>('0' + index);
        text += fields[index];
    }
    std::array<T, count> values;
    if (!read((text + "\n\n").data(), values.data())) return;
    for (std::size_t index = 0; index < count; ++index) {
        T expected{};
        fuzz::require(parse(fields[index], expected), "a fast field of a run is one");
        fuzz::require(sameValue(static_cast<double>(values[index]), static_cast<double>(expected)),
                      "its value");
    }
}

template <std::size_t width>
void readIntegerRuns(std::string_view field) {
    if (field.size() != width) return;
    readRun<7, int32_t>(field, intake::fast::readIntegers<width, 7>, intake::parseInteger);
}

template <int decimals>
void readRealRuns(std::string_view field) {
    if (field.size() != std::size_t{decimals} + 7) return;
    readRun<5, double>(field, intake::fast::readReals<decimals, 5>,
                       [](std::string_view text, double& value) {
                           return intake::parseReal(text, decimals, 1, value);
                       });
}

template <std::size_t... widths>
void readIntegersFast(std::string_view field, std::index_sequence<widths...>) {
    (readIntegerFast<widths + 1>(field), ...);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    constexpr std::size_t kLongestField = 300;
    if (size < 1 || size > kLongestField) return 0;
    const int decimals = data[0] % 16;
    const int scale = data[0] / 16 % 2;
    const std::string field(reinterpret_cast<const char*>(data + 1), size - 1);
    // Where the C library sees the end of its text, it is no judge.
    if (field.find('\0') != std::string::npos) return 0;
    const std::string text = withoutBlanks(field);

    int64_t integer = 0;
    const bool isInteger = intake::parseInteger(field, integer);
    const std::optional<int64_t> expectedInteger = integerOpinion(text);
    fuzz::require(isInteger == expectedInteger.has_value(), "the verdict on an integer");
    fuzz::require(!isInteger || integer == *expectedInteger, "the value of an integer");

    double real = 0;
    const bool isReal = intake::parseReal(field, decimals, scale, real);
    const std::optional<double> expectedReal = realOpinion(text, decimals, scale);
    fuzz::require(isReal == expectedReal.has_value(), "the verdict on a real");
    fuzz::require(!isReal || sameValue(real, *expectedReal), "the value of a real");

    readIntegersFast(field, std::make_index_sequence<15>());
    readRealFast(field, 7, intake::fast::readReal<7>);
    readRealFast(field, 14, intake::fast::readReal<14>);
    readRealFast(field, 17, intake::fast::readLongReal);
    double fixed = 0;
    if (intake::fast::readFixed(field, decimals, scale, fixed)) {
        fuzz::require(isReal && sameValue(fixed, real), "a fixed decimal read quickly");
    }
    readIntegerRuns<10>(field);
    readIntegerRuns<14>(field);
    readRealRuns<7>(field);
    readRealRuns<14>(field);

    bool logical = false;
    intake::parseLogical(field, logical);
    return 0;
}
