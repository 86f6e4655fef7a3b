#include <algorithm>
#include <cstring>

#include "stream/compressed.h"

namespace intake {

namespace {

constexpr std::string_view kEndMark = "~}";
constexpr std::size_t kLongestLine = kCompressedLength - kEndMark.size();
using MarkedLine = FixedText<kCompressedLength + kEndMark.size()>;

// Where the reader sees the end of a line: behind the first "}" with an odd number of "~" before
// it.
std::size_t endSeen(std::string_view packed) {
    std::size_t escapes = 0;
    for (std::size_t index = 0; index < packed.size(); ++index) {
        if (packed[index] == '}' && escapes % 2 == 1) return index + 1;
        escapes = packed[index] == '~' ? escapes + 1 : 0;
    }
    return 0;
}

// All of them are looked at, since that is many at a time.
bool hasCharactersOfMark(std::string_view text) {
    bool found = false;
    for (const char character : text) {
        found |= (character == kEndMark[0]) | (character == kEndMark[1]);
    }
    return found;
}

bool survives(std::string_view text, int32_t level) {
    CompressedLine packed;
    int32_t count = 0;
    CMPLIN(text, level, packed, count);
    const std::size_t length = static_cast<std::size_t>(count) + kEndMark.size();
    MarkedLine marked(packed.view());
    std::memcpy(marked.data() + count, kEndMark.data(), kEndMark.size());
    if (endSeen(marked.full().substr(0, length)) != length) return false;
    // The reader leaves the mark on a line that fills its buffer.
    const bool full = length >= kCompressedLength;
    const CompressedLine work(full ? marked.full() : packed.view());
    FixedText<kLongestLine> line;
    DCMLIN(work, {line.data(), line.size()}, count);
    return line.view() == text;
}

}  // namespace

int32_t survivingLevel(std::span<const char> line, int32_t level) {
    const std::string_view text = qx::trimText(line.data(), line.size());
    if (text.size() > kLongestLine) return 0;
    if (!hasCharactersOfMark(text) && text.size() + kEndMark.size() < kLongestLine) return level;
    while (level > 0 && !survives(text, level)) --level;
    return level;
}

}  // namespace intake
