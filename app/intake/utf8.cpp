#include "app/intake/utf8.h"

#include <cstdint>

namespace program {

bool isUtf8(std::string_view text) {
    for (std::size_t index = 0; index < text.size();) {
        const auto lead = static_cast<unsigned char>(text[index]);
        if (lead < 0x80) {
            ++index;
            continue;
        }
        const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        if (lead < 0xC2 || lead > 0xF4 || index + length > text.size()) return false;
        uint32_t code = lead & (0xFFU >> (length + 1));
        for (std::size_t each = 1; each < length; ++each) {
            const auto next = static_cast<unsigned char>(text[index + each]);
            if ((next & 0xC0) != 0x80) return false;
            code = code << 6 | (next & 0x3FU);
        }
        const bool overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
        const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
        if (overlong || surrogate || code > 0x10FFFF) return false;
        index += length;
    }
    return true;
}

std::string latin1ToUtf8(std::string_view text) {
    std::string result;
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x80) {
            result += character;
        } else {
            result += static_cast<char>(0xC0 | code >> 6);
            result += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return result;
}

std::string toUtf8(std::string_view text) {
    return isUtf8(text) ? std::string(text) : latin1ToUtf8(text);
}

}  // namespace program
