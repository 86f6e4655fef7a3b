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

// Before a character that stands for one of 92 to 99.
constexpr char kHighMark = 125;

// The two digits that a character of a number stands for, as they lie in memory: by itself, and
// behind the mark of the high ones. Zeros where it stands for none.
using PairsOfCharacters = std::array<std::array<char, 2>, 256>;
constexpr std::array<PairsOfCharacters, 2> kPairs = [] {
    std::array<PairsOfCharacters, 2> pairs{};
    for (std::size_t value = 0; value < 100; ++value) {
        const bool high = value >= 92;
        const std::size_t code = high ? value - 59 : value + kLowestPair;
        pairs[high][code] = {static_cast<char>('0' + value / 10),
                             static_cast<char>('0' + value % 10)};
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
            std::memcpy(place.out + 2 * index, kPairs[0][code].data(), 2);
        }
        const std::size_t count = plainPairs(place.next);
        place.next += count;
        place.out += 2 * count;
        if (count != 8) return place;
    }
    while (place.more() && isPlain(place.code())) {
        place = pair(place, kPairs[0][static_cast<std::size_t>(place.code())]);
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

// The "~" that ended a number belongs to it, unless it begins a run of blanks. Whether there is one
// is past guessing, so that nothing jumps at it.
inline Place behindNumber(Place place) {
    if (place.last - place.next >= 2) {
        place.next += int{place.next[0] == '~'} & int{place.next[1] != ' '};
    }
    return place;
}

// Where the five pairs of a single-precision real go: the first digit then moves one to the left,
// to make room for the point, and "E" and its sign stand before the last pair.
constexpr std::array<std::size_t, 5> kPlacesOfPairs = {1, 3, 5, 7, 11};

// Puts five pairs there, of which some may be two characters, and goes behind them. False if there
// is anything else among them.
inline bool putFivePairs(const char*& next, char* out) {
    bool sound = true;
    for (const std::size_t place : kPlacesOfPairs) {
        // A sum is quicker than a jump that is past guessing.
        const bool high = *next == kHighMark;
        next += int{high};
        const auto& pair = kPairs[high][static_cast<unsigned char>(*next++)];
        std::memcpy(out + place, pair.data(), pair.size());
        sound &= pair[0] != 0;
    }
    return sound;
}

// Most numbers of single precision: a digit, the point, seven digits and an exponent. Leaves the
// place as it is if this is another one.
inline Place singleReal(Place place, int header) {
    constexpr std::ptrdiff_t kLongest = 11;  // five pairs and the character behind them
    if ((header != 15 + 1 && header != 30 + 1) || place.last - place.next < kLongest) return place;
    const char* next = place.next;
    if (plainPairs(next) == kPlacesOfPairs.size()) {
        for (const std::size_t out : kPlacesOfPairs) {
            const auto& pair = kPairs[0][static_cast<unsigned char>(*next++)];
            std::memcpy(place.out + out, pair.data(), pair.size());
        }
    } else if (!putFivePairs(next, place.out)) {
        return place;
    }
    if (*next != '~' && *next != ' ') return place;
    place.out[0] = place.out[1];
    place.out[1] = '.';
    place.out[9] = 'E';
    place.out[10] = header < 30 ? '+' : '-';
    return {next, place.last, place.out + 13};
}

// The end of a number of fewer than three digits, which only a damaged file holds: padding digit,
// point and exponent then meet what came out before the number, of which only the start of the line
// is a bound. The digits end where the place is.
[[gnu::noinline]] Place shortNumber(Place place, char* line, char* start, int header) {
    if (header >= 45) {
        header -= 45;
        if (place.out != line) --place.out;
    }
    const auto insert = [&place](char* where, std::string_view text) {
        const auto behind = static_cast<std::size_t>(place.out - where);
        std::memmove(where + text.size(), where, behind);
        std::memcpy(where, text.data(), text.size());
        place.out += text.size();
    };
    if (header % 15 != 0) insert(std::min(start + header % 15, place.out), ".");
    if (header >= 15) {
        insert(place.out - std::min<std::ptrdiff_t>(2, place.out - line),
               header < 30 ? "E+" : "E-");
    }
    return behindNumber(place);
}

// A number, from its header on, in a line that begins where it is said.
inline Place number(Place place, char* line) {
    char* const start = place.out;
    int header = place.code() - 33;
    ++place.next;
    place = singleReal(place, header);
    if (place.out != start) return behindNumber(place);
    const int pointBehind = header % 15;
    // The point's place is left free in front of all digits; those before it then move up.
    if (pointBehind != 0) ++place.out;
    char* const first = place.out;
    place = pairs(place);
    std::ptrdiff_t digits = place.out - first;
    if (digits < 3) {
        std::memmove(start, first, static_cast<std::size_t>(digits));
        place.out = start + digits;
        return shortNumber(place, line, start, header);
    }
    // The padding digit goes first, then the point, then the exponent.
    if (header >= 45) {
        header -= 45;
        --place.out;
        --digits;
    }
    if (pointBehind != 0) {
        const std::ptrdiff_t before = std::min<std::ptrdiff_t>(pointBehind, digits);
        for (std::ptrdiff_t index = 0; index < before; ++index) start[index] = first[index];
        start[before] = '.';
    }
    if (header >= 15) {
        place.out[0] = place.out[-2];
        place.out[1] = place.out[-1];
        place.out[-2] = 'E';
        place.out[-1] = header < 30 ? '+' : '-';
        place.out += 2;
    }
    return behindNumber(place);
}

constexpr std::size_t kUsualLength = 80;

// Damaged numbers take a character back for two of the text at most, so that blanks beyond this
// many behind the limit are never seen.
constexpr std::size_t kBlanksBehind = kCompressedLength / 2 + 2;

// Anything but blanks gives at most 2 characters for one of the text, and a token 3 more for its 2
// of escape and header. Eight pairs may be written where one was.
constexpr std::size_t kRoom = kLongestDecoded + kBlanksBehind + 4 * kCompressedLength + 16;

// Returns the end of what was decoded. Blanks end at the limit.
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
        place = place.code() >= 33 && place.code() <= 123 ? number(place, decoded)
                                                          : escaped(place, limit);
    }
    return place.out;
}

}  // namespace

void DCMLIN(std::string_view work, std::span<char> line, int32_t& count) {
    const std::string_view text = qx::trimText(work.substr(0, kCompressedLength));
    const std::size_t limit = std::min(line.size(), kLongestDecoded);
    std::array<char, kRoom> decoded;
    const char* const end = decode(text, decoded.data(), decoded.data() + limit + kBlanksBehind);
    const std::size_t length = std::min(limit, static_cast<std::size_t>(end - decoded.data()));
    if (line.size() == kUsualLength) {
        // Copies and fills of a length that is known are a few moves.
        std::memset(decoded.data() + length, ' ', kUsualLength);
        std::memcpy(line.data(), decoded.data(), kUsualLength);
    } else {
        qx::padText(line.data(), line.size(), {decoded.data(), length});
    }
    count = static_cast<int32_t>(length);
}

}  // namespace intake
