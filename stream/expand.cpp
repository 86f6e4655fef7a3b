#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "stream/compressed.h"
#include "stream/fast_fields.h"

namespace intake {

namespace {

constexpr char kLowestPair = 33;    // stands for 00
constexpr char kHighestPair = 124;  // stands for 91

// The two digits that a character of a number stands for, as they lie in memory.
constexpr std::array<std::array<char, 2>, 256> kDigitPairs = [] {
    std::array<std::array<char, 2>, 256> pairs{};
    for (std::size_t code = kLowestPair; code <= kHighestPair; ++code) {
        const std::size_t value = code - kLowestPair;
        pairs[code] = {static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
    }
    return pairs;
}();

// Where the decoding stands, in the text and in what comes out.
struct Place {
    const char* next;
    const char* last;
    char* out;

    bool more() const { return next != last; }
    int code() const { return static_cast<unsigned char>(*next); }
};

// What follows a "~" that begins no number. Blanks beyond the limit are not asked for.
Place escaped(Place place, const char* limit) {
    if (place.code() == ' ') {
        ++place.next;
        if (!place.more()) return place;
        const int count = place.code() - 32;
        ++place.next;
        if (count > 0 && place.out < limit) {
            place.out =
                std::fill_n(place.out, std::min<std::ptrdiff_t>(count, limit - place.out), ' ');
        }
    } else {
        // "~~" is one of them. Before any other character the escape is gone, and the character
        // counts as plain text.
        *place.out++ = *place.next++;
    }
    return place;
}

// How many of the next eight characters stand for two digits each, before the first that does not.
inline std::size_t plainPairs(const char* text) {
    constexpr uint64_t kHigh = fast::eightTimes('\x80');
    const uint64_t eight = fast::eightCharacters(text);
    // A code that is too low borrows and one that is too high carries, which the codes behind it
    // feel, but none before it.
    const uint64_t others = ((eight - fast::eightTimes(kLowestPair)) |
                             (eight + fast::eightTimes(127 - kHighestPair)) | eight) &
                            kHigh;
    return others == 0 ? 8 : static_cast<std::size_t>(std::countr_zero(others)) / 8;
}

inline bool isPlain(int code) { return code >= kLowestPair && code <= kHighestPair; }

inline Place pair(Place place, std::array<char, 2> digits) {
    std::memcpy(place.out, digits.data(), digits.size());
    place.out += 2;
    return place;
}

// Plain pairs up to the first other character, eight at a time as long as there are so many.
inline Place plainRun(Place place) {
    while (fast::kLowestFirst && place.last - place.next >= 8) {
        // All eight are written, since that is quicker than to ask; what is too many is written
        // over.
        for (std::size_t index = 0; index < 8; ++index) {
            const auto code = static_cast<unsigned char>(place.next[index]);
            std::memcpy(place.out + 2 * index, kDigitPairs[code].data(), 2);
        }
        const std::size_t count = plainPairs(place.next);
        if (count == 5) {
            // Eight digits and an exponent: with a known step the processor goes on before it has
            // the count.
            place.next += 5;
            place.out += 10;
            return place;
        }
        place.next += count;
        place.out += 2 * count;
        if (count != 8) return place;
    }
    while (place.more() && isPlain(place.code())) {
        place = pair(place, kDigitPairs[static_cast<std::size_t>(place.code())]);
        ++place.next;
    }
    return place;
}

// The digits of a number to its end. What a damaged file holds is decoded all the same.
inline Place pairs(Place place) {
    for (;;) {
        place = plainRun(place);
        if (!place.more() || int{place.code() == ' '} | int{place.code() == '~'}) return place;
        int value = place.code() - kLowestPair;
        ++place.next;
        if (value == 92) {
            if (!place.more()) return place;
            value = place.code() + 59;
            ++place.next;
        }
        place =
            pair(place, {static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)});
    }
}

// A number, from its header on.
inline Place number(Place place) {
    char* const start = place.out;
    int header = place.code() - 33;
    ++place.next;
    const int pointBehind = header % 15;
    // The point's place is left free in front of all digits; those before it then move up.
    if (pointBehind != 0) ++place.out;
    char* const first = place.out;
    place = pairs(place);
    // The padding digit goes first, then the point, then the exponent.
    if (header >= 45) {
        header -= 45;
        if (place.out != first) --place.out;
    }
    const std::ptrdiff_t digits = place.out - first;
    if (pointBehind != 0) {
        const std::ptrdiff_t before = std::min<std::ptrdiff_t>(pointBehind, digits);
        for (std::ptrdiff_t index = 0; index < before; ++index) start[index] = first[index];
        start[before] = '.';
    }
    if (header >= 15 && digits >= 2) {
        place.out[0] = place.out[-2];
        place.out[1] = place.out[-1];
        place.out[-2] = 'E';
        place.out[-1] = header < 30 ? '+' : '-';
        place.out += 2;
    }
    // The "~" that ended the token belongs to it, unless it begins a run of blanks. Whether there
    // is one is past guessing, so that nothing jumps at it.
    if (place.last - place.next >= 2) {
        place.next += int{place.next[0] == '~'} & int{place.next[1] != ' '};
    }
    return place;
}

// Blanks stop at the limit. Anything else gives at most 2 characters for one of the text, and a
// token 3 more for its 2 of escape and header. Eight pairs may be written where one was.
constexpr std::size_t kRoom = kLongestDecoded + 4 * kCompressedLength + 16;

// Returns the end of what was decoded, which may lie behind the limit.
const char* decode(std::string_view text, char* decoded, const char* limit) {
    Place place{text.data(), text.data() + text.size(), decoded};
    while (place.more()) {
        if (*place.next != '~') {
            *place.out++ = *place.next++;
            continue;
        }
        ++place.next;
        // A lone "~" at the end is dropped.
        if (!place.more()) break;
        place = place.code() >= 33 && place.code() <= 123 ? number(place) : escaped(place, limit);
    }
    return place.out;
}

}  // namespace

void DCMLIN(std::string_view work, std::span<char> line, int32_t& count) {
    const std::string_view text = qx::trimText(work.substr(0, kCompressedLength));
    const std::size_t limit = std::min(line.size(), kLongestDecoded);
    std::array<char, kRoom> decoded;
    const char* const end = decode(text, decoded.data(), decoded.data() + limit);
    const std::size_t length = std::min(limit, static_cast<std::size_t>(end - decoded.data()));
    qx::padText(line.data(), line.size(), {decoded.data(), length});
    count = static_cast<int32_t>(length);
}

}  // namespace intake
