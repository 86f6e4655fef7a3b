#include "formats/geojson/json_text.h"

namespace formats::geojson {

void appendQuoted(std::string& text, std::string_view value) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    text += '"';
    std::size_t plain = 0;  // where those begin that stay as they are
    for (std::size_t i = 0; i < value.size(); ++i) {
        const auto byte = static_cast<unsigned char>(value[i]);
        if (byte >= 0x20 && byte != '"' && byte != '\\') continue;
        text += value.substr(plain, i - plain);
        plain = i + 1;
        switch (byte) {
            case '"':
            case '\\':
                text += {'\\', value[i]};
                break;
            case '\n':
                text += "\\n";
                break;
            case '\r':
                text += "\\r";
                break;
            case '\t':
                text += "\\t";
                break;
            default:
                text += "\\u00";
                text += {kDigits[byte >> 4], kDigits[byte & 15]};
        }
    }
    text += value.substr(plain);
    text += '"';
}

}  // namespace formats::geojson
