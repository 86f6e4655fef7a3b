// Runs of equal reals side by side, several at a time.
//
// Precondition: each field has the shape of fast::readReal, with a blank or a minus in front and
// an exponent for which one multiplication or division gives the value; kBehindReals characters
// behind the last field can be looked at. For anything else the answer is false, which says nothing
// about the fields. What is read has the values that the careful reader gives, bit for bit.
//
// Only what every x86-64 has is used. Any other processor reads one field after the other.
#ifndef STREAM_FAST_REALS_H
#define STREAM_FAST_REALS_H

#include "stream/fast_fields.h"
#include "stream/sixteen.h"

namespace intake::fast {

inline constexpr std::size_t kBehindReals = 2;

// One field after the other.
template <int decimals, std::size_t count>
[[gnu::noinline]] bool readEachReal(const char* fields, double* values) {
    for (std::size_t index = 0; index < count; ++index) {
        if (!readReal<decimals>(fields + index * (decimals + 7), values[index])) return false;
    }
    return true;
}

#if defined(__SSE2__)

// Sixteen characters of a real: digits as numbers, and 0 for everything else that is as it has to
// be, but for a minus. `minus` has all bits where one stands that may, which says nothing of the
// other places.
struct RealPart {
    __m128i digits;
    __m128i minus;
};

// The characters of a part as it has to be, by how much each may be higher, and the difference of a
// minus where one may stand, 0 elsewhere. What is not like that is gathered in others.
inline RealPart realPart(const char* text, __m128i characters, __m128i range, __m128i minus,
                         __m128i& others) {
    RealPart part;
    part.digits = _mm_xor_si128(sixteenCharacters(text), characters);
    part.minus = _mm_cmpeq_epi8(part.digits, minus);
    others = _mm_or_si128(others, _mm_subs_epu8(part.digits, _mm_or_si128(range, part.minus)));
    return part;
}

// In front of the first digit a minus may stand.
inline __m128i sumBehindSign(__m128i digits, __m128i evenWeights, __m128i oddWeights) {
    return sumOfDigits(digits, words(0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF), evenWeights,
                       oddWeights);
}

// Two values of two numbers of digits, their scales and their signs.
inline __m128d scaledPair(__m128d digits, const Scale& first, const Scale& second, __m128i minus,
                          __m128i secondMinus) {
    const __m128d one = _mm_load_pd(&first.factor);
    const __m128d other = _mm_load_pd(&second.factor);
    const __m128d magnitude =
        _mm_div_pd(_mm_mul_pd(digits, _mm_unpacklo_pd(one, other)), _mm_unpackhi_pd(one, other));
    const __m128i sign = _mm_slli_epi64(_mm_unpacklo_epi64(minus, secondMinus), 63);
    return _mm_xor_pd(magnitude, _mm_castsi128_pd(sign));
}

// E14.7: " d.dddddddE+dd" and two characters behind.
template <std::size_t count>
bool readSingles(const char* fields, double* values) {
    const __m128i characters = bytes(" 0.0000000E+00\0\0");
    const __m128i range = bytes("\0\x09\0\x09\x09\x09\x09\x09\x09\x09\0\0\x09\x09\xFF\xFF");
    const __m128i minus = bytes("\x0D\0\0\0\0\0\0\0\0\0\0\x06\0\0\0\0");
    std::array<RealPart, count> part;
    __m128i others = _mm_setzero_si128();
    for (std::size_t index = 0; index < count; ++index) {
        part[index] = realPart(fields + 14 * index, characters, range, minus, others);
    }
    if (!isZero(others)) return false;
    // Two digits, four, two, and the exponent.
    __m128i sums[count];
    std::array<const Scale*, count> scales;
    for (std::size_t index = 0; index < count; ++index) {
        sums[index] = sumBehindSign(part[index].digits, words(0, 0, 1000, 10, 10, 0, 10, 0),
                                    words(1000, 100, 100, 1, 1, 0, 1, 0));
        const int smaller = _mm_movemask_epi8(part[index].minus) >> 11 & 1;
        scales[index] = &kScales<7>[static_cast<std::size_t>(smaller)]
                                   [static_cast<std::size_t>(_mm_extract_epi16(sums[index], 6))];
    }
    __m128d unknown = _mm_setzero_pd();
    for (std::size_t index = 0; index < count; index += 2) {
        const std::size_t second = index + 1 < count ? index + 1 : index;
        const __m128i both = _mm_madd_epi16(_mm_packs_epi32(sums[index], sums[second]),
                                            words(10000, 100, 1, 0, 10000, 100, 1, 0));
        const __m128i whole = _mm_add_epi32(both, _mm_srli_epi64(both, 32));
        const __m128d value =
            scaledPair(_mm_cvtepi32_pd(_mm_shuffle_epi32(whole, _MM_SHUFFLE(3, 1, 2, 0))),
                       *scales[index], *scales[second], part[index].minus, part[second].minus);
        unknown = _mm_or_pd(unknown, _mm_cmpunord_pd(value, value));
        if (second == index) {
            _mm_store_sd(values + index, value);
        } else {
            _mm_storeu_pd(values + index, value);
        }
    }
    return _mm_movemask_pd(unknown) == 0;
}

// E21.14: " d.ddddddddddddddE+dd", its first sixteen characters and its last.
template <std::size_t count>
bool readWides(const char* fields, double* values) {
    const __m128i start = bytes(" 0.0000000000000");
    const __m128i startRange =
        bytes("\0\x09\0\x09\x09\x09\x09\x09\x09\x09\x09\x09\x09\x09\x09\x09");
    const __m128i startMinus = bytes("\x0D\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0");
    const __m128i end = bytes("000000000000E+00");
    const __m128i endRange = bytes("\x09\x09\x09\x09\x09\x09\x09\x09\x09\x09\x09\x09\0\0\x09\x09");
    const __m128i endMinus = bytes("\0\0\0\0\0\0\0\0\0\0\0\0\0\x06\0\0");
    std::array<RealPart, count> first;
    std::array<RealPart, count> last;
    __m128i others = _mm_setzero_si128();
    for (std::size_t index = 0; index < count; ++index) {
        const char* field = fields + 21 * index;
        first[index] = realPart(field, start, startRange, startMinus, others);
        last[index] = realPart(field + 5, end, endRange, endMinus, others);
    }
    if (!isZero(others)) return false;
    const auto fours = [](const RealPart& part) {
        return sumBehindSign(part.digits, words(0, 0, 1000, 10, 1000, 10, 1000, 10),
                             words(10, 1, 100, 1, 100, 1, 100, 1));
    };
    const auto scale = [](const RealPart& part, int exponent) -> const Scale& {
        const int smaller = _mm_movemask_epi8(part.minus) >> 13 & 1;
        return kScales<14>[static_cast<std::size_t>(smaller)][static_cast<std::size_t>(exponent)];
    };
    __m128d unknown = _mm_setzero_pd();
    for (std::size_t index = 0; index < count; index += 2) {
        const std::size_t second = index + 1 < count ? index + 1 : index;
        // The last digit of each, and the exponent of each.
        const __m128i tails =
            sumBehindSign(_mm_unpackhi_epi32(last[index].digits, last[second].digits),
                          words(0, 0, 0, 0, 0, 10, 0, 10), words(0, 1, 0, 1, 0, 1, 0, 1));
        // Six digits and eight of each.
        const __m128i both =
            _mm_madd_epi16(_mm_packs_epi32(fours(first[index]), fours(first[second])),
                           words(10000, 1, 10000, 1, 10000, 1, 10000, 1));
        const __m128i whole = _mm_add_epi64(
            _mm_add_epi64(_mm_mul_epu32(both, _mm_set1_epi64x(1000000000)),
                          _mm_mul_epu32(_mm_srli_epi64(both, 32), _mm_set1_epi64x(10))),
            _mm_unpacklo_epi32(tails, _mm_setzero_si128()));
        // Fifteen digits fit beside the exponent of 2 to the 52nd.
        const __m128d shift = _mm_set1_pd(4503599627370496.0);
        const __m128d digits =
            _mm_sub_pd(_mm_castsi128_pd(_mm_or_si128(whole, _mm_castpd_si128(shift))), shift);
        const __m128d value = scaledPair(digits, scale(last[index], _mm_extract_epi16(tails, 4)),
                                         scale(last[second], _mm_extract_epi16(tails, 6)),
                                         first[index].minus, first[second].minus);
        unknown = _mm_or_pd(unknown, _mm_cmpunord_pd(value, value));
        if (second == index) {
            _mm_store_sd(values + index, value);
        } else {
            _mm_storeu_pd(values + index, value);
        }
    }
    return _mm_movemask_pd(unknown) == 0;
}

#endif

// A run of reals of 7 or 14 decimals. The first that asks for more care is left to readReal.
template <int decimals, std::size_t count>
inline bool readReals(const char* fields, double* values) {
#if defined(__SSE2__)
    if constexpr (count > 1 && decimals == 7) {
        if (readSingles<count>(fields, values)) [[likely]]
            return true;
    } else if constexpr (count > 1) {
        if (readWides<count>(fields, values)) [[likely]]
            return true;
    }
#endif
    return readEachReal<decimals, count>(fields, values);
}

}  // namespace intake::fast

#endif
