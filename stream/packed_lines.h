// Lines of reals in the compressed form, read without expanding them.
//
// Precondition: the fields are reals of one shape, and the line holds as many numbers as
// packed_reals.h takes and its end mark. It begins in the physical line at hand and ends there or
// in the next one, which lies whole in the block that was read: at most 80 characters, the last no
// blank. Any other line goes the way of IMPLIN and read.
#ifndef STREAM_PACKED_LINES_H
#define STREAM_PACKED_LINES_H

#include <algorithm>
#include <array>
#include <cstring>

#include "stream/packed_reals.h"
#include "stream/reader_state.h"

namespace intake {

// The next physical line where it lies, and what comes behind its line end.
struct PhysicalLine {
    const char* text;
    std::size_t length;
    const char* following;
};

// False if it does not lie there as it has to, with a whole buffer of characters to copy.
inline bool findPhysicalLine(PhysicalLine& line) {
    const QxWindow& window = *reader.window;
    constexpr std::size_t kFarthestEnd = Line::kLength + 2;
    if (window.end - window.next < static_cast<std::ptrdiff_t>(kFarthestEnd)) return false;
    line.text = window.next;
    const void* end = std::memchr(line.text, '\n', kFarthestEnd);
    if (!end) return false;
    line.following = static_cast<const char*>(end) + 1;
    // A carriage return is looked for in what a line of 80 characters keeps of it.
    const auto whole = static_cast<std::size_t>(static_cast<const char*>(end) - line.text);
    line.length = std::min(whole, Line::kLength);
    if (reader.HASCR && line.length > 0 && line.text[line.length - 1] == '\r') --line.length;
    return line.length > 0 && line.text[line.length - 1] != ' ';
}

// False, and nothing is read, if the next line is another one; the values are then left with
// anything.
template <int decimals, std::size_t count>
bool takePackedReals([[maybe_unused]] double* values) {
#if defined(__SSE2__)
    constexpr std::ptrdiff_t kReach = fast::kPackedReach<decimals>;
    const std::string_view physical = reader.atHand.empty() ? reader.IMPBUF.view() : reader.atHand;
    if (reader.EXPCOL != 0 || static_cast<std::size_t>(reader.IMPCOL) > physical.size() + 1 ||
        physical.size() < kReach) {
        return false;
    }
    const char* next = physical.data() + reader.IMPCOL - 1;
    const char* end = physical.data() + physical.size();
    // The end of the line at hand and the next one behind it, once that is needed.
    std::array<char, kReach + Line::kLength> joined;
    const char* const seam = joined.data() + kReach;
    PhysicalLine following{};
    std::array<fast::PackedReal, count> reals;
    bool ended = end != next && *next == '-';
#pragma GCC unroll 4
    for (std::size_t index = 0; index < count; ++index) {
        if (end - next < kReach) {
            if (following.text || !findPhysicalLine(following)) return false;
            std::memcpy(joined.data(), end - kReach, kReach);
            std::memcpy(joined.data() + kReach, following.text, Line::kLength);
            next = seam - (end - next);
            end = seam + following.length;
            if (end - next < kReach) return false;
            if (index == 0) ended = *next == '-';
        }
        if (!fast::takePackedReal<decimals>(next, ended, reals[index])) return false;
    }
    for (std::size_t index = 0; index < count; index += 2) {
        const bool isPair = index + 1 < count;
        double two[2];
        if (!fast::putTogether(reals[index], reals[isPair ? index + 1 : index], two)) return false;
        std::memcpy(values + index, two, (isPair ? 2 : 1) * sizeof(double));
    }
    if (!ended || *next != '}') return false;
    ++next;
    if (!following.text) {
        reader.IMPCOL = static_cast<int32_t>(next - physical.data()) + 1;
    } else if (next <= seam) {
        reader.IMPCOL =
            static_cast<int32_t>(physical.size()) + 1 - static_cast<int32_t>(seam - next);
    } else {
        std::memcpy(reader.IMPBUF.data(), following.text, Line::kLength);
        for (std::size_t at = following.length; at < Line::kLength; ++at) reader.IMPBUF[at] = ' ';
        reader.IMPCOL = static_cast<int32_t>(next - seam) + 1;
        reader.window->next = following.following;
        reader.atHand = {following.text, following.length};
        ++reader.lineNumber;
    }
    ++reader.logicalLines;
    return true;
#else
    return false;
#endif
}

}  // namespace intake

#endif
