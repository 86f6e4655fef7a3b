// Runs of equal integers side by side, several at a time.
//
// Precondition: each field holds blanks, a minus or none, and digits to its end, all but the blanks
// within its last eight columns. For anything else the answer is false, which says nothing about
// the fields. What is read has the values that the careful reader gives.
//
// Only what every x86-64 has is used. Any other processor reads one field after the other.
#ifndef STREAM_FAST_INTEGERS_H
#define STREAM_FAST_INTEGERS_H

#include "stream/fast_fields.h"
#include "stream/sixteen.h"

namespace intake::fast {

// One field after the other.
template <std::size_t width, std::size_t count>
[[gnu::noinline]] bool readEachInteger(const char* fields, int32_t* values) {
    for (std::size_t index = 0; index < count; ++index) {
        if (!readInteger<width>(fields + index * width, values[index])) return false;
    }
    return true;
}

#if defined(__SSE2__)

// The last eight characters of two fields: their digits, and all bits where a minus stands.
struct TwoIntegers {
    __m128i digits;
    __m128i minus;
};

// What is not as it has to be is gathered in others.
inline TwoIntegers twoIntegers(__m128i text, __m128i& others) {
    const __m128i digits = _mm_xor_si128(text, _mm_set1_epi8('0'));
    const __m128i isDigit = _mm_cmpeq_epi8(_mm_min_epu8(digits, _mm_set1_epi8(9)), digits);
    const __m128i minus = _mm_cmpeq_epi8(text, _mm_set1_epi8('-'));
    const __m128i begun = _mm_or_si128(isDigit, minus);
    const __m128i blank = _mm_cmpeq_epi8(text, _mm_set1_epi8(' '));
    // A digit or a minus is followed by a digit, and the last character is one.
    const __m128i digitWanted =
        _mm_or_si128(_mm_slli_epi64(begun, 8), bytes("\0\0\0\0\0\0\0\xFF\0\0\0\0\0\0\0\xFF"));
    others = _mm_or_si128(others, _mm_andnot_si128(isDigit, digitWanted));
    others =
        _mm_or_si128(others, _mm_andnot_si128(_mm_or_si128(begun, blank), _mm_set1_epi8('\xFF')));
    return {_mm_and_si128(digits, isDigit), minus};
}

template <std::size_t width, std::size_t count>
bool readShortIntegers(const char* fields, int32_t* values) {
    constexpr std::size_t kBefore = width - 8;
    constexpr std::size_t kPairs = (count + 1) / 2;
    static_assert(kBefore < 8);
    __m128i others = _mm_setzero_si128();
    if constexpr (kBefore > 0) {
        uint64_t before = 0;
        for (std::size_t index = 0; index < count; ++index) {
            before |= eightCharacters(fields + index * width) ^ eightTimes(' ');
        }
        others = _mm_cvtsi64_si128(static_cast<int64_t>(before << (64 - 8 * kBefore)));
    }
    std::array<TwoIntegers, kPairs> pairs;
    for (std::size_t index = 0; index < count; index += 2) {
        const char* text = fields + index * width + kBefore;
        const char* next = index + 1 < count ? text + width : text;
        pairs[index / 2] = twoIntegers(eightCharactersTwice(text, next), others);
    }
    if (!isZero(others)) return false;
    const auto fours = [](const TwoIntegers& two) {
        return sumOfDigits(two.digits, _mm_set1_epi16(0xFF),
                           words(1000, 10, 1000, 10, 1000, 10, 1000, 10),
                           words(100, 1, 100, 1, 100, 1, 100, 1));
    };
    // A minus leaves a sum, in the lower half of its lane.
    const auto signs = [](const TwoIntegers& two) {
        return _mm_castsi128_ps(_mm_sad_epu8(two.minus, _mm_setzero_si128()));
    };
    for (std::size_t index = 0; index < count; index += 4) {
        const TwoIntegers& first = pairs[index / 2];
        const TwoIntegers& second = pairs[index + 2 < count ? index / 2 + 1 : index / 2];
        const __m128i magnitudes = _mm_madd_epi16(_mm_packs_epi32(fours(first), fours(second)),
                                                  words(10000, 1, 10000, 1, 10000, 1, 10000, 1));
        const __m128i negative = _mm_cmpgt_epi32(
            _mm_castps_si128(_mm_shuffle_ps(signs(first), signs(second), _MM_SHUFFLE(2, 0, 2, 0))),
            _mm_setzero_si128());
        std::array<int32_t, 4> four;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(four.data()),
                         _mm_sub_epi32(_mm_xor_si128(magnitudes, negative), negative));
        std::memcpy(values + index, four.data(),
                    (count - index < 4 ? count - index : 4) * sizeof(int32_t));
    }
    return true;
}

#endif

// A run of integers. The first that asks for more care is left to readInteger.
template <std::size_t width, std::size_t count>
inline bool readIntegers(const char* fields, int32_t* values) {
#if defined(__SSE2__)
    if constexpr (count > 1 && width >= 8 && width <= kWidestInteger) {
        if (readShortIntegers<width, count>(fields, values)) [[likely]]
            return true;
    }
#endif
    return readEachInteger<width, count>(fields, values);
}

}  // namespace intake::fast

#endif
