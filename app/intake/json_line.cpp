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

// Any text in quotes: what is not UTF-8 is taken as Latin-1.
std::string quoted(std::string_view any) {
    constexpr char kDigits[] = "0123456789abcdef";
    const std::string whole = toUtf8(any);
    std::string line = "\"";
    for (std::string_view text = whole; !text.empty();) {
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
    return line += '"';
}

}  // namespace

void JsonOutput::flush() {
    stream_.write(reinterpret_cast<const char*>(text_.data()), static_cast<std::streamsize>(used_));
    used_ = 0;
    stream_.flush();
}

JsonKey::JsonKey(std::string_view name) : text_(',' + quoted(name) + ':'), length_(text_.size()) {
    text_.resize(length_ + kStep + 1);
}

JsonLine::JsonLine(JsonOutput& output, std::string_view className) : output_(output) {
    output_.add('{');
    first_ = true;
    field("class", className);
}

JsonLine::~JsonLine() {
    output_.add("}\n");
    if (output_.used_ >= kPieceBytes) output_.flush();
}

void JsonLine::text(std::string_view text) {
    separate();
    if (plainCharacters(text) != text.size()) {
        output_.add(quoted(text));
        return;
    }
    output_.add('"');
    output_.add(text);
    output_.add('"');
}

JsonLine& JsonLine::key(std::string_view name) {
    text(name);
    output_.add(':');
    first_ = true;  // the value follows with no comma
    return *this;
}

JsonLine& JsonLine::value(std::string_view text) {
    this->text(qx::trimText(text));
    return *this;
}

JsonLine& JsonLine::value(bool truth) {
    separate();
    output_.add(truth ? "true" : "false");
    return *this;
}

JsonLine& JsonLine::value(int64_t number) {
    constexpr std::size_t kMost = 24;
    separate();
    char* place = output_.room(kMost);
    output_.use(std::to_chars(place, place + kMost, number).ptr);
    return *this;
}

JsonLine& JsonLine::value(double number) {
    constexpr std::size_t kMost = 32;
    separate();
    if (!std::isfinite(number)) {
        output_.add(std::isnan(number) ? "\"NaN\"" : number > 0 ? "\"Infinity\"" : "\"-Infinity\"");
        return *this;
    }
    char* place = output_.room(kMost);
    char* end = std::to_chars(place, place + kMost, number).ptr;
    // Most have a point, behind a few digits.
    if (!std::memchr(place, '.', static_cast<std::size_t>(end - place)) &&
        !std::memchr(place, 'e', static_cast<std::size_t>(end - place))) {
        *end++ = '.';
        *end++ = '0';
    }
    output_.use(end);
    return *this;
}

JsonLine& JsonLine::null() {
    separate();
    output_.add("null");
    return *this;
}

JsonLine& JsonLine::pairs(std::span<const double> values) {
    beginList();
    for (std::size_t index = 0; index + 1 < values.size(); index += 2) {
        value(values.subspan(index, 2));
    }
    return endList();
}

JsonLine& JsonLine::open(char bracket) {
    separate();
    output_.add(bracket);
    first_ = true;
    return *this;
}

JsonLine& JsonLine::close(char bracket) {
    output_.add(bracket);
    first_ = false;
    return *this;
}

}  // namespace program
