// Sixteen characters at a time, with what every x86-64 has; nothing on any other processor.
#ifndef STREAM_SIXTEEN_H
#define STREAM_SIXTEEN_H

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>

namespace intake::fast {

inline __m128i sixteenCharacters(const char* text) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
}
inline __m128i eightCharactersTwice(const char* first, const char* second) {
    return _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(first)),
                              _mm_loadl_epi64(reinterpret_cast<const __m128i*>(second)));
}

// Sixteen bytes and eight words, the first one in the lowest place.
inline __m128i bytes(const char (&values)[17]) { return sixteenCharacters(values); }
inline __m128i words(int16_t a, int16_t b, int16_t c, int16_t d, int16_t e, int16_t f, int16_t g,
                     int16_t h) {
    return _mm_setr_epi16(a, b, c, d, e, f, g, h);
}

inline bool isZero(__m128i bits) {
    return _mm_movemask_epi8(_mm_cmpeq_epi8(bits, _mm_setzero_si128())) == 0xFFFF;
}

// Digits, which are numbers by now, times their weights, summed up in fours. The even ones are
// those in the lower half of a word; only the wanted of them count.
inline __m128i sumOfDigits(__m128i digits, __m128i wantedEven, __m128i evenWeights,
                           __m128i oddWeights) {
    return _mm_add_epi32(_mm_madd_epi16(_mm_and_si128(digits, wantedEven), evenWeights),
                         _mm_madd_epi16(_mm_srli_epi16(digits, 8), oddWeights));
}

}  // namespace intake::fast

#endif

#endif
