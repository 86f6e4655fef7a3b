#include "companions/qxfeat/item_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "companions/qxfeat/table_definition.h"
#include "companions/store/words.h"
#include "host/cpp/fixed_text.h"

namespace qxfeat {

namespace {

constexpr double kTwoTo63 = 9223372036854775808.0;

void putText(std::span<std::byte> bytes, std::string_view text) {
    if (!bytes.empty()) qx::padText(reinterpret_cast<char*>(bytes.data()), bytes.size(), text);
}

bool putToTheRight(std::span<std::byte> bytes, std::string_view text) {
    putText(bytes, "");
    if (text.size() > bytes.size()) return false;
    std::memcpy(bytes.data() + (bytes.size() - text.size()), text.data(), text.size());
    return true;
}

bool packDigits(std::span<std::byte> bytes, double value) {
    putText(bytes, "");
    if (!(value >= -kTwoTo63 && value < kTwoTo63)) return false;
    std::array<char, 24> digits;
    const char* end =
        std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<int64_t>(value))
            .ptr;
    return putToTheRight(bytes, {digits.data(), static_cast<std::size_t>(end - digits.data())});
}

bool packDecimal(std::span<std::byte> bytes, double value, int32_t decimals) {
    // The longest real has 309 digits before its point; the decimals of an item are two digits.
    std::array<char, 512> text;
    putText(bytes, "");
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value,
                                      std::chars_format::fixed, std::clamp(decimals, 0, 99));
    return result.ec == std::errc() &&
           putToTheRight(bytes, {text.data(), static_cast<std::size_t>(result.ptr - text.data())});
}

template <class T>
bool packWhole(std::byte* place, double value) {
    constexpr double kLimit = -static_cast<double>(std::numeric_limits<T>::min());
    if (!(value >= -kLimit && value < kLimit)) return false;
    if constexpr (sizeof(T) == 1) {
        *place = static_cast<std::byte>(static_cast<T>(value));
    } else {
        store::put(place, static_cast<T>(value));
    }
    return true;
}

bool packInteger(std::span<std::byte> bytes, double value) {
    switch (bytes.size()) {
        case 1:
            return packWhole<int8_t>(bytes.data(), value);
        case 2:
            return packWhole<int16_t>(bytes.data(), value);
        case 4:
            return packWhole<int32_t>(bytes.data(), value);
        case 8:
            return packWhole<int64_t>(bytes.data(), value);
        default:
            return false;
    }
}

bool packReal(std::span<std::byte> bytes, double value) {
    if (bytes.size() == sizeof(double)) {
        store::put(bytes.data(), value);
        return true;
    }
    if (bytes.size() != sizeof(float)) return false;
    const auto narrow = static_cast<float>(value);
    if (std::isinf(narrow) && !std::isinf(value)) return false;
    store::put(bytes.data(), narrow);
    return true;
}

// Numbers that do not fit leave zeros.
bool orZeros(bool packed, std::span<std::byte> bytes) {
    if (!packed) std::fill(bytes.begin(), bytes.end(), std::byte{0});
    return packed;
}

int64_t unpackInteger(std::span<const std::byte> bytes) {
    if (bytes.empty() || bytes.size() > 8) return 0;
    uint64_t word = static_cast<int8_t>(bytes[0]) < 0 ? ~uint64_t{0} : 0;
    for (const std::byte byte : bytes) word = word << 8 | std::to_integer<uint64_t>(byte);
    return static_cast<int64_t>(word);
}

double parseNumber(std::span<const std::byte> bytes) {
    const std::string_view field(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::size_t first = std::min(field.find_first_not_of(' '), field.size());
    const std::string_view text = qx::trimText(field.substr(first));
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() ? value : 0;
}

}  // namespace

bool packItem(const QxItemDescriptor& item, double value, std::string_view text,
              std::span<std::byte> bytes) {
    switch (item.type) {
        case QX_ITEM_CHARACTER:
            putText(bytes, text);
            return true;
        case QX_ITEM_DATE:
        case QX_ITEM_INTEGER_TEXT:
            return packDigits(bytes, value);
        case QX_ITEM_NUMBER_TEXT:
            return packDecimal(bytes, value, item.decimals);
        case QX_ITEM_INTEGER:
            return orZeros(packInteger(bytes, value), bytes);
        case QX_ITEM_REAL:
            return orZeros(packReal(bytes, value), bytes);
        default:
            return orZeros(false, bytes);
    }
}

double unpackNumber(const QxItemDescriptor& item, std::span<const std::byte> bytes) {
    switch (item.type) {
        case QX_ITEM_INTEGER:
            return static_cast<double>(unpackInteger(bytes));
        case QX_ITEM_REAL:
            if (bytes.size() == sizeof(double)) return store::get<double>(bytes.data());
            if (bytes.size() == sizeof(float)) return store::get<float>(bytes.data());
            return 0;
        case QX_ITEM_DATE:
        case QX_ITEM_CHARACTER:
        case QX_ITEM_INTEGER_TEXT:
        case QX_ITEM_NUMBER_TEXT:
            return parseNumber(bytes);
        default:
            return 0;
    }
}

}  // namespace qxfeat
