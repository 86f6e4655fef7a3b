#include "app/intake/export/decoder.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <utility>

namespace program {

namespace {

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char each) { return static_cast<unsigned char>(each) < 128; });
}

}  // namespace

Decoder::Decoder(const std::string& encoding)
    : converter_(::iconv_open("UTF-8", encoding.c_str())) {
    if (converter_ == reinterpret_cast<void*>(-1)) {
        throw std::runtime_error(encoding + ": no encoding that this system knows");
    }
}

Decoder::~Decoder() { ::iconv_close(converter_); }

std::string_view Decoder::decode(std::string_view text, bool isUtf8, std::string& room) {
    text = text.substr(0, text.find_last_not_of(' ') + 1);
    if (isUtf8 || isAscii(text)) return text;
    ::iconv(converter_, nullptr, nullptr, nullptr, nullptr);
    // No encoding makes more than four bytes of UTF-8 of one byte.
    room.resize(text.size() * 4 + 16);
    char* from = const_cast<char*>(text.data());
    std::size_t left = text.size();
    char* to = room.data();
    std::size_t space = room.size();
    while (left != 0 && ::iconv(converter_, &from, &left, &to, &space) == std::size_t(-1)) {
        if (errno == E2BIG) break;
        constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
        if (left == 0 || space < kReplacement.size()) break;
        to = std::copy(kReplacement.begin(), kReplacement.end(), to);
        space -= kReplacement.size();
        ++from;
        --left;
        ++undecoded_;
    }
    return {room.data(), static_cast<std::size_t>(to - room.data())};
}

int64_t Decoder::takeUndecoded() { return std::exchange(undecoded_, 0); }

}  // namespace program
