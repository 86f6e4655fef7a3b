// Numbers as their bytes, the lowest first, appended.
#ifndef FORMATS_LITTLE_ENDIAN_H
#define FORMATS_LITTLE_ENDIAN_H

#include <algorithm>
#include <array>
#include <bit>
#include <string>

namespace formats {

template <class Number>
void appendLittleEndian(std::string& text, Number number) {
    auto bytes = std::bit_cast<std::array<char, sizeof number>>(number);
    if constexpr (std::endian::native == std::endian::big) std::ranges::reverse(bytes);
    text.append(bytes.data(), bytes.size());
}

template <class Number, std::size_t count>
void appendLittleEndian(std::string& text, const std::array<Number, count>& numbers) {
    for (const Number number : numbers) appendLittleEndian(text, number);
}

}  // namespace formats

#endif
