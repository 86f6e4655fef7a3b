#include "app/intake/batch/exact_path.h"

#include <cctype>

#include "app/intake/utf8.h"

namespace program {

namespace {

constexpr char kPath[] = "path";
constexpr char kBytes[] = "path_bytes";
constexpr char kDigits[] = "0123456789ABCDEF";

std::string shownAsUnicode(std::string_view path) {
    std::string text;
    while (!path.empty()) {
        // A character has up to four bytes; a wrong byte stands alone.
        std::size_t length = 1;
        while (length <= 4 && length <= path.size() && !isUtf8(path.substr(0, length))) ++length;
        if (length <= 4 && length <= path.size()) {
            text += path.substr(0, length);
            path.remove_prefix(length);
        } else {
            text += "\xEF\xBF\xBD";
            path.remove_prefix(1);
        }
    }
    return text;
}

int valueOf(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    return std::isxdigit(static_cast<unsigned char>(digit)) != 0 ? (digit & 15) + 9 : -1;
}

}  // namespace

void addPath(nlohmann::ordered_json& object, std::string_view path) {
    if (isUtf8(path)) {
        object[kPath] = path;
        return;
    }
    object[kPath] = shownAsUnicode(path);
    std::string exact;
    for (const char each : path) {
        const auto code = static_cast<unsigned char>(each);
        const bool plain = code < 0x80 && (std::isalnum(code) != 0 || each == '/' || each == '-' ||
                                           each == '.' || each == '_' || each == '~');
        if (plain) {
            exact += each;
        } else {
            ((exact += '%') += kDigits[code >> 4]) += kDigits[code & 15];
        }
    }
    object[kBytes] = exact;
}

std::string pathOf(const nlohmann::json& object) {
    const auto exact = object.find(kBytes);
    if (exact == object.end() || !exact->is_string()) {
        const auto path = object.find(kPath);
        return path != object.end() && path->is_string() ? path->get<std::string>() : "";
    }
    const auto& text = exact->get_ref<const std::string&>();
    std::string path;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const int high = at + 2 < text.size() ? valueOf(text[at + 1]) : -1;
        const int low = at + 2 < text.size() ? valueOf(text[at + 2]) : -1;
        if (text[at] == '%' && high >= 0 && low >= 0) {
            path += static_cast<char>(high * 16 + low);
            at += 2;
        } else {
            path += text[at];
        }
    }
    return path;
}

}  // namespace program
