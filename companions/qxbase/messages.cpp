#include "host/qxbase/messages.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "companions/qxbase/state.h"
#include "host/cpp/fixed_text.h"

namespace {

using qx::textArgument;

// What error_ and fatal_ throw. ImportFile's guard takes every exception; this one has no content
// because the message has been given by then.
struct ImportEnded {};

struct Host {
    QxMessageSink sink = nullptr;
    void* user = nullptr;
};

Host host;
std::vector<std::string> values;
std::string routine;  // of the next message, empty where it was not named
std::vector<void (*)()> beforeUnwinding;

// Bytes of the character of UTF-8 at the front that is no control; 0 where there is none.
std::size_t characterLength(std::string_view text) {
    const auto code = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    if (code(0) < 0x80) return code(0) < 32 || code(0) == 127 ? 0 : 1;
    // 0xC2 with 0x80 to 0x9F is the second set of controls; 0xC0 and 0xC1 begin nothing.
    const std::size_t length = code(0) < 0xC2   ? 0
                               : code(0) < 0xE0 ? 2
                               : code(0) < 0xF0 ? 3
                               : code(0) < 0xF5 ? 4
                                                : 0;
    if (text.size() < length || (code(0) == 0xC2 && code(1) < 0xA0)) return 0;
    for (std::size_t index = 1; index < length; ++index) {
        if ((code(index) & 0xC0) != 0x80) return 0;
    }
    return length;
}

// Shows controls as \x1B. Other bytes that are no UTF-8 stay: a text may be in another character
// set.
std::string escaped(std::string_view text) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string result;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        const auto code = static_cast<unsigned char>(text[0]);
        if (length == 0 && (code < 0xA0)) {
            result += "\\x";
            result += kDigits[code >> 4];
            result += kDigits[code & 15];
        } else {
            result += text.substr(0, std::max<std::size_t>(length, 1));
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

// One pass over the text; what a value holds is not looked at again.
std::string composed(std::string_view text) {
    std::string result;
    for (std::size_t index = 0; index < text.size();) {
        const std::string_view rest = text.substr(index);
        if (rest.size() >= 3 && rest[0] == '%' && rest[2] == '%' && rest[1] >= '1' &&
            rest[1] <= '3') {
            const auto which = static_cast<std::size_t>(rest[1] - '1');
            if (which < values.size()) result += values[which];
            index += 3;
        } else if (rest.starts_with("/&")) {
            result += '\n';
            index += 2;
        } else {
            result += text[index++];
        }
    }
    values.clear();
    return result;
}

void give(int32_t level, const char* text, int32_t length) {
    const std::string message = composed(textArgument(text, length));
    if (host.sink) {
        host.sink(level, message.c_str(), host.user);
    } else {
        const std::string source = routine.empty() ? "" : " (" + routine + ")";
        std::fputs((message + source + '\n').c_str(), stderr);
    }
    routine.clear();
}

[[noreturn]] void unwind() {
    for (auto* function : beforeUnwinding) function();
    qxbase::flushFiles();
    throw ImportEnded{};
}

}  // namespace

namespace qxbase {

void clearMessages() {
    values.clear();
    routine.clear();
}

}  // namespace qxbase

void mesink_(QxMessageSink sink, void* user) { host = {sink, user}; }

void meschr_(const char* text, const int32_t*, int32_t textLength) {
    values.push_back(escaped(textArgument(text, textLength)));
}

void mesint_(const int32_t* value) { values.push_back(std::to_string(*value)); }

void inform_(const char* text, const int32_t*, int32_t length) { give(QX_INFORM, text, length); }
void warn_(const char* text, const int32_t*, int32_t length) { give(QX_WARN, text, length); }
void nonftl_(const char* text, const int32_t*, int32_t length) { give(QX_NONFATAL, text, length); }

void error_(const char* text, const int32_t*, int32_t length) {
    give(QX_ERROR, text, length);
    unwind();
}

void fatal_(const char* text, const int32_t*, int32_t length) {
    give(QX_FATAL, text, length);
    unwind();
}

void mesrtnC(const char* name) { routine = name; }

void nonftlC(const char* text) { give(QX_NONFATAL, text, static_cast<int32_t>(std::strlen(text))); }

void fatalC(const char* text) {
    give(QX_FATAL, text, static_cast<int32_t>(std::strlen(text)));
    unwind();
}

void mesrawC(int32_t level, const char* text) {
    if (host.sink) {
        host.sink(level, text, host.user);
    } else {
        std::fputs(text, stderr);
        std::fputc('\n', stderr);
    }
}

void onunwC(void (*function)()) {
    if (std::find(beforeUnwinding.begin(), beforeUnwinding.end(), function) ==
        beforeUnwinding.end()) {
        beforeUnwinding.push_back(function);
    }
}
