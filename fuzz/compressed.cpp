// Expanding any text, and compressing a line and expanding it again.
#include "stream/compressed.h"

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz/scratch.h"

namespace {

using namespace intake;

// The lengths that section routines ask for, and a short one; an input is tried with one of them.
constexpr std::size_t kLengths[] = {80, 81, 160, 300, 7};

void expandAnything(std::string_view text) {
    const std::size_t length = kLengths[text.size() % std::size(kLengths)];
    std::vector<char> line(length, '?');
    int32_t count = -1;
    DCMLIN(CompressedLine(text), line, count);
    fuzz::require(count >= 0 && static_cast<std::size_t>(count) <= length, "the count fits");
    const auto isBlank = [](char character) { return character == ' '; };
    fuzz::require(std::all_of(line.begin() + count, line.end(), isBlank), "blanks behind the text");
}

void thereAndBack(std::string_view text) {
    const FixedText<140> line(text);  // a line of "~" alone doubles, and must still fit
    for (const int32_t level : {1, 2}) {
        CompressedLine packed;
        int32_t count = 0;
        CMPLIN({line.data(), line.size()}, level, packed, count);
        FixedText<140> back;
        DCMLIN(packed, {back.data(), back.size()}, count);
        fuzz::require(back == line, "a line comes back from its compressed form");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    expandAnything(text);
    thereAndBack(text);
    return 0;
}
