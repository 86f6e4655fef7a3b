// The next logical line as a whole, taken from where it lies in the block that was read.
//
// Precondition: the file is in the plain form without carriage returns, and the line and what may
// stand behind it lie in the block. For any other line the answer is false, nothing is read, and
// IMPLIN(line) is the way.
#ifndef STREAM_WHOLE_LINES_H
#define STREAM_WHOLE_LINES_H

#include <bit>
#include <cstring>

#include "stream/reader.h"
#include "stream/sixteen.h"

namespace intake {

// Characters behind a line that takeWholeLine may write over.
inline constexpr std::size_t kBehindLine = 16;

// Fills 80 characters, padded with blanks; a line of more asks for care.
inline bool takeWholeLine(char* line) {
#if defined(__SSE2__)
    constexpr std::ptrdiff_t kLooked = 96;
    QxWindow& window = *reader.window;
    if (window.end - window.next < kLooked || reader.EXPVER != 0 || reader.HASCR || isReportDue()) {
        return false;
    }
    const __m128i lineEnd = _mm_set1_epi8('\n');
    for (std::size_t start = 0; start < kLooked; start += 16) {
        const __m128i characters = fast::sixteenCharacters(window.next + start);
        const int ends = _mm_movemask_epi8(_mm_cmpeq_epi8(characters, lineEnd));
        if (start < Line::kLength) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(line + start), characters);
        }
        if (ends == 0) continue;
        const std::size_t length =
            start + static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(ends)));
        if (length > Line::kLength) return false;
        for (std::size_t at = length; at < Line::kLength; at += 16) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(line + at), _mm_set1_epi8(' '));
        }
        window.next += length + 1;
        ++reader.lineNumber;
        ++reader.logicalLines;
        return true;
    }
#endif
    static_cast<void>(line);
    return false;
}

// Gives the line where it lies, good until anything else is read. One of more characters than are
// said asks for care too.
inline bool takeWholeLine(std::size_t most, std::string_view& line) {
    QxWindow& window = *reader.window;
    const auto left = static_cast<std::size_t>(window.end - window.next);
    if (reader.EXPVER != 0 || reader.HASCR || isReportDue() || left <= most) return false;
    const void* end = std::memchr(window.next, '\n', most + 1);
    if (!end) return false;
    line = {window.next, static_cast<std::size_t>(static_cast<const char*>(end) - window.next)};
    window.next += line.size() + 1;
    ++reader.lineNumber;
    ++reader.logicalLines;
    return true;
}

}  // namespace intake

#endif
