#include "app/intake/json_line.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "app/intake/utf8.h"
#include "host/cpp/fixed_text.h"

namespace program {

namespace {

constexpr std::size_t kPieceBytes = 256 * 1024;

// How many characters stand at the front of a text that print as they are: ASCII, neither a
// control character nor a quote nor a backslash. Eight at a time where they are many.
std::size_t plainCharacters(std::string_view text) {
    constexpr uint64_t kOnes = 0x0101010101010101U;
    constexpr uint64_t kHighest = kOnes << 7;
    // The highest bit of each byte that is 0; a borrow may set more behind the first one.
    const auto zeros = [](uint64_t word) { return (word - kOnes) & ~word; };
    std::size_t place = 0;
    for (uint64_t eight; place + sizeof eight <= text.size(); place += sizeof eight) {
        std::memcpy(&eight, text.data() + place, sizeof eight);
        const uint64_t control = (eight - kOnes * ' ') & ~eight;
        const uint64_t special =
            control | zeros(eight ^ kOnes * '"') | zeros(eight ^ kOnes * '\\') | eight;
        if ((special & kHighest) != 0) break;
    }
    for (; place < text.size(); ++place) {
        const auto code = static_cast<unsigned char>(text[place]);
        if (code < ' ' || code > 127 || code == '"' || code == '\\') break;
    }
    return place;
}

// A text that is UTF-8, in quotes.
void appendQuoted(std::string& line, std::string_view text) {
    constexpr char kDigits[] = "0123456789abcdef";
    line += '"';
    while (!text.empty()) {
        const std::size_t plain = plainCharacters(text);
        line.append(text.data(), plain);
        if (plain == text.size()) break;
        const auto code = static_cast<unsigned char>(text[plain]);
        if (code == '"' || code == '\\') {
            (line += '\\') += text[plain];
        } else if (code < ' ') {
            ((line += "\\u00") += kDigits[code >> 4]) += kDigits[code & 15];
        } else {
            line += text[plain];
        }
        text.remove_prefix(plain + 1);
    }
    line += '"';
}

// Any text, in quotes: what is not UTF-8 is taken as Latin-1.
void appendText(std::string& line, std::string_view text) {
    if (plainCharacters(text) == text.size()) {
        ((line += '"') += text) += '"';
    } else {
        appendQuoted(line, toUtf8(text));
    }
}

}  // namespace

void JsonOutput::flush() {
    stream_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
    stream_.flush();
}

JsonLine::JsonLine(JsonOutput& output, std::string_view className)
    : output_(output), text_(output.text_) {
    text_ += '{';
    first_ = true;
    field("class", className);
}

JsonLine::~JsonLine() {
    text_ += "}\n";
    if (text_.size() >= kPieceBytes) output_.flush();
}

void JsonLine::separate() {
    if (!first_) text_ += ',';
    first_ = false;
}

JsonKey::JsonKey(std::string_view name) {
    appendText(text_, name);
    text_ += ':';
}

JsonLine& JsonLine::key(std::string_view name) {
    separate();
    appendText(text_, name);
    text_ += ':';
    first_ = true;  // the value follows with no comma
    return *this;
}

JsonLine& JsonLine::key(const JsonKey& name) {
    separate();
    text_ += name.text_;
    first_ = true;
    return *this;
}

JsonLine& JsonLine::value(std::string_view text) {
    separate();
    appendText(text_, qx::trimText(text));
    return *this;
}

JsonLine& JsonLine::value(bool truth) {
    separate();
    text_ += truth ? "true" : "false";
    return *this;
}

JsonLine& JsonLine::value(int64_t number) {
    separate();
    char digits[24];
    text_.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    return *this;
}

JsonLine& JsonLine::value(double number) {
    separate();
    if (!std::isfinite(number)) {
        text_ += std::isnan(number) ? "\"NaN\"" : number > 0 ? "\"Infinity\"" : "\"-Infinity\"";
        return *this;
    }
    char digits[32];
    const char* end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    const std::string_view form(digits, static_cast<std::size_t>(end - digits));
    text_ += form;
    if (form.find_first_of(".e") == std::string_view::npos) text_ += ".0";
    return *this;
}

JsonLine& JsonLine::null() {
    separate();
    text_ += "null";
    return *this;
}

JsonLine& JsonLine::pairs(std::span<const double> values) {
    beginList();
    for (std::size_t index = 0; index + 1 < values.size(); index += 2) {
        value(values.subspan(index, 2));
    }
    return endList();
}

JsonLine& JsonLine::beginList() {
    separate();
    text_ += '[';
    first_ = true;
    return *this;
}

JsonLine& JsonLine::endList() {
    text_ += ']';
    first_ = false;
    return *this;
}

JsonLine& JsonLine::beginObject() {
    separate();
    text_ += '{';
    first_ = true;
    return *this;
}

JsonLine& JsonLine::endObject() {
    text_ += '}';
    first_ = false;
    return *this;
}

}  // namespace program
