// Reals straight from the compressed form.
//
// Precondition: a blank or a minus; "~" and the header of a number with its point behind the first
// digit and an exponent; five pairs of digits for E14.7, nine for E21.14, of which no more than two
// in five have a mark of the high ones; a blank or "~" behind it; an exponent for which one
// multiplication or division gives the value. So a whole number is always there, and neither its
// digits nor its end are in doubt. For anything else the answer is false, which says nothing about
// the text: expanding it and reading the field decides. What is read has the value that comes of
// that, bit for bit.
//
// Only what every x86-64 has is used. On any other processor nothing is taken.
#ifndef STREAM_PACKED_REALS_H
#define STREAM_PACKED_REALS_H

#include "stream/fast_fields.h"
#include "stream/sixteen.h"

namespace intake::fast {

#if defined(__SSE2__)

// How pairs of digits lie in eight characters with marks of the high ones at given places: what
// stays of the characters as first one mark is taken out and then another, and a 1 in the byte of
// each pair that had one.
struct PairPlaces {
    uint64_t beforeFirst = ~uint64_t{0};
    uint64_t beforeSecond = ~uint64_t{0};
    uint64_t marked = 0;
    std::size_t length = 0;  // of so many pairs, in characters; 0 for more than two marks
};

// By the marks in the first seven characters, the lowest bit for the first.
template <int count>
inline constexpr auto kPairPlaces = [] {
    std::array<PairPlaces, 128> all{};
    for (std::size_t marks = 0; marks < all.size(); ++marks) {
        PairPlaces& places = all[marks];
        int marked = 0;
        std::size_t at = 0;
        for (int pair = 0; pair < count; ++pair) {
            if ((marks >> at & 1) != 0) {
                const uint64_t place = uint64_t{1} << (8 * pair);
                places.marked |= place;
                (++marked == 1 ? places.beforeFirst : places.beforeSecond) = place - 1;
                ++at;
            }
            ++at;
        }
        places.length = marked > 2 ? 0 : at;
    }
    return all;
}();

// The pairs of eight characters that lie like that, each a number in its byte from the lowest on.
// Nothing jumps at a mark, which is past guessing.
template <int count>
[[gnu::always_inline]] inline uint64_t takePairs(const char* text, const PairPlaces& places,
                                                 bool& sound) {
    constexpr uint64_t kLowest = 33;
    constexpr uint64_t kHighest = 124;  // stands for 91; behind a mark the lowest stands for 92
    constexpr uint64_t kCounted = eightTimes('\x80') >> (64 - 8 * count);
    uint64_t characters = eightCharacters(text);
    characters = (characters & places.beforeFirst) | (characters >> 8 & ~places.beforeFirst);
    characters = (characters & places.beforeSecond) | (characters >> 8 & ~places.beforeSecond);
    // Eight codes are used behind a mark. As if they were the highest of those without one.
    const uint64_t codes = characters + places.marked * (kHighest - kLowest - 7);
    const uint64_t numbers = codes - eightTimes(kLowest);
    const uint64_t others = (characters - eightTimes(kLowest)) | characters | codes |
                            (codes + eightTimes(127 - kHighest));
    sound &= (others & kCounted) == 0;
    return numbers + places.marked * 8;
}

constexpr uint64_t pairAt(uint64_t pairs, int index) { return pairs >> (8 * index) & 0xFF; }

// The first four pairs as one number.
constexpr uint64_t numberOfFour(uint64_t pairs) {
    constexpr uint64_t kEverySecond = 0x00FF00FF;
    const uint64_t fours = (pairs & kEverySecond) * 100 + (pairs >> 8 & kEverySecond);
    return (fours & 0xFFFF) * 10000 + fours / 0x10000;
}

// How far a number may be looked at.
template <int decimals>
inline constexpr std::ptrdiff_t kPackedReach = decimals == 7 ? 16 : 24;

// A number that is not put together yet.
struct PackedReal {
    double digits;
    const Scale* scale;
    bool minus;
};

// Two of them. False if the scale of one is unknown.
inline bool putTogether(const PackedReal& first, const PackedReal& second, double* values) {
    const __m128d one = _mm_load_pd(&first.scale->factor);
    const __m128d other = _mm_load_pd(&second.scale->factor);
    const __m128d value = _mm_div_pd(
        _mm_mul_pd(_mm_setr_pd(first.digits, second.digits), _mm_unpacklo_pd(one, other)),
        _mm_unpackhi_pd(one, other));
    const __m128i signs = _mm_set_epi64x(static_cast<int64_t>(uint64_t{second.minus} << 63),
                                         static_cast<int64_t>(uint64_t{first.minus} << 63));
    _mm_storeu_pd(values, _mm_xor_pd(value, _mm_castsi128_pd(signs)));
    return _mm_movemask_pd(_mm_cmpunord_pd(value, value)) == 0;
}

// A blank ends a number and stands in front of the next one; before a minus and at the end of the
// line a number ends with a "~".
//
// The number at next, which goes behind it; ended tells of the one before whether it ended with a
// "~", and then of this one.
template <int decimals>
[[gnu::always_inline]] inline bool takePackedReal(const char*& next, bool& ended,
                                                  PackedReal& value) {
    // With one more digit in the last pair where their number is odd.
    constexpr char kPlus = decimals == 7 ? 33 + 15 + 1 : 33 + 45 + 15 + 1;
    constexpr char kMinus = kPlus + 15;
    constexpr unsigned kFirst = 3;
    constexpr unsigned kNoEnd = 1U << 17;
    const char* const text = next;
    const auto sign = static_cast<char>(' ' + int{ended} * ('-' - ' '));
    const __m128i characters = sixteenCharacters(text);
    const auto like = [&](char character) {
        return _mm_cmpeq_epi8(characters, _mm_set1_epi8(character));
    };
    const auto placesOf = [](__m128i found) {
        return static_cast<unsigned>(_mm_movemask_epi8(found));
    };
    // What the next number waits for, so this comes first and is short.
    const __m128i escapes = like('~');
    const unsigned ends = (placesOf(_mm_or_si128(escapes, like(' '))) & ~7U) | kNoEnd;
    const auto end = static_cast<unsigned>(std::countr_zero(ends));
    const unsigned escape = placesOf(escapes) >> end & 1;
    next = text + end + escape;
    ended = escape != 0;
    const unsigned marks = placesOf(like('}'));
    const bool smaller = text[2] == kMinus;
    bool sound =
        int{text[0] == sign} & int{text[1] == '~'} & (int{smaller} | int{text[2] == kPlus});
    const PairPlaces& first = kPairPlaces<5>[marks >> kFirst & 0x7F];
    const uint64_t start = takePairs<5>(text + kFirst, first, sound);
    uint64_t digits = numberOfFour(start & 0xFFFFFFFF);
    uint64_t exponent = pairAt(start, 4);
    std::size_t taken = kFirst + first.length;
    if constexpr (decimals == 14) {
        const PairPlaces& second = kPairPlaces<4>[marks >> taken & 0x7F];
        const uint64_t rest = takePairs<4>(text + taken, second, sound);
        digits = ((digits * 100 + exponent) * 100 + pairAt(rest, 0)) * 1000 + pairAt(rest, 1) * 10 +
                 pairAt(rest, 2) / 10;
        exponent = pairAt(rest, 2) % 10 * 10 + pairAt(rest, 3) / 10;
        sound &= first.length != 0 && second.length != 0;
        taken += second.length;
    }
    if (!sound || taken != end) return false;
    value.digits = static_cast<double>(digits);
    value.scale = &kScales<decimals>[smaller][exponent];
    value.minus = sign == '-';
    return true;
}

#endif

}  // namespace intake::fast

#endif
