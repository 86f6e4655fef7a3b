#include "app/intake/console.h"

#include "app/intake/utf8.h"

namespace program {

std::string shown(std::string_view text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    const std::string readable = toUtf8(text);
    std::string result;
    const auto escape = [&](unsigned code) {
        result += "\\x";
        result += kDigits[code >> 4];
        result += kDigits[code & 15];
    };
    for (std::size_t index = 0; index < readable.size(); ++index) {
        const auto code = static_cast<unsigned char>(readable[index]);
        // The controls from 80 to 9F are two bytes, the first of which is C2.
        const unsigned next =
            index + 1 < readable.size() ? static_cast<unsigned char>(readable[index + 1]) : 0U;
        if (code < 0x20 || code == 0x7F) {
            escape(code);
        } else if (code == 0xC2 && next >= 0x80 && next < 0xA0) {
            escape(next);
            ++index;
        } else {
            result += readable[index];
        }
    }
    return result;
}

std::string lead(const Console& console, std::string_view level) {
    struct Colour {
        std::string_view level;
        const char* begin;
    };
    static constexpr Colour kColours[] = {
        {"warning", "\033[33m"}, {"error", "\033[31m"}, {"fatal", "\033[1;31m"}};
    const std::string plain = std::string(level) + ":";
    for (const Colour& colour : kColours) {
        if (console.coloured && colour.level == level) return colour.begin + plain + "\033[m ";
    }
    return plain + " ";
}

void complain(Console& console, std::string_view text) {
    console.errors << "intake: " << shown(text) << std::endl;
}

void complainInLines(Console& console, std::string_view text) {
    complain(console, text.substr(0, text.find('\n')));
    for (std::size_t end = text.find('\n'); end != std::string_view::npos;) {
        const std::size_t start = end + 1;
        end = text.find('\n', start);
        console.errors << shown(text.substr(start, end - start)) << std::endl;
    }
}

}  // namespace program
