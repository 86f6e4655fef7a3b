#include "app/intake/json_line.h"

#include <charconv>
#include <cmath>

#include "app/intake/utf8.h"
#include "host/cpp/fixed_text.h"

namespace program {

namespace {

constexpr std::size_t kPieceBytes = 256 * 1024;

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

JsonLine& JsonLine::key(std::string_view name) {
    separate();
    quoted(toUtf8(name));
    text_ += ':';
    first_ = true;  // the value follows with no comma
    return *this;
}

void JsonLine::quoted(std::string_view text) {
    constexpr char kDigits[] = "0123456789abcdef";
    text_ += '"';
    for (const char character : text) {
        const auto code = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            text_ += '\\';
            text_ += character;
        } else if (code < 32) {
            text_ += "\\u00";
            text_ += kDigits[code >> 4];
            text_ += kDigits[code & 15];
        } else {
            text_ += character;
        }
    }
    text_ += '"';
}

JsonLine& JsonLine::value(std::string_view text) {
    separate();
    text = qx::trimText(text);
    if (isUtf8(text)) {
        quoted(text);
    } else {
        quoted(latin1ToUtf8(text));
    }
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
