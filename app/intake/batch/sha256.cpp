#include "app/intake/batch/sha256.h"

#include <algorithm>
#include <bit>
#include <cstring>

#if defined(__x86_64__)
#include <cpuid.h>
#include <immintrin.h>
#endif

namespace program {

namespace {

constexpr std::size_t kBlock = 64;

alignas(16) constexpr uint32_t kConstants[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

bool hasInstructions() {
#if defined(__x86_64__)
    constexpr unsigned kSha = 1U << 29;    // of leaf 7, EBX
    constexpr unsigned kSse41 = 1U << 19;  // of leaf 1, ECX
    constexpr unsigned kSsse3 = 1U << 9;
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0 || (b & kSha) == 0) return false;
    return __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & kSse41) != 0 && (c & kSsse3) != 0;
#else
    return false;
#endif
}

}  // namespace

Sha256::Sha256(Way way)
    : state_{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
             0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19} {
    static const bool fast = hasInstructions();
    take_ = fast && way == Way::kBest ? takeFast : takePlain;
}

void Sha256::takePlain(State& state, const unsigned char* blocks, std::size_t count) {
    for (; count != 0; --count, blocks += kBlock) {
        std::array<uint32_t, 64> words;
        for (std::size_t at = 0; at < 16; ++at) {
            const unsigned char* const four = blocks + 4 * at;
            words[at] = uint32_t{four[0]} << 24 | uint32_t{four[1]} << 16 | uint32_t{four[2]} << 8 |
                        uint32_t{four[3]};
        }
        for (std::size_t at = 16; at < 64; ++at) {
            const uint32_t early = words[at - 15];
            const uint32_t late = words[at - 2];
            words[at] = words[at - 16] + words[at - 7] +
                        (std::rotr(early, 7) ^ std::rotr(early, 18) ^ early >> 3) +
                        (std::rotr(late, 17) ^ std::rotr(late, 19) ^ late >> 10);
        }
        auto [a, b, c, d, e, f, g, h] = state;
        for (std::size_t at = 0; at < 64; ++at) {
            const uint32_t one = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) +
                                 ((e & f) ^ (~e & g)) + kConstants[at] + words[at];
            const uint32_t two = (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) +
                                 ((a & b) ^ (a & c) ^ (b & c));
            h = g;
            g = f;
            f = e;
            e = d + one;
            d = c;
            c = b;
            b = a;
            a = one + two;
        }
        const State now = {a, b, c, d, e, f, g, h};
        for (std::size_t at = 0; at < state.size(); ++at) state[at] += now[at];
    }
}

#if defined(__x86_64__)
__attribute__((target("sha,sse4.1,ssse3"))) void Sha256::takeFast(State& state,
                                                                  const unsigned char* blocks,
                                                                  std::size_t count) {
    const __m128i turned = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
    // The instructions keep the state as ABEF and CDGH.
    const auto load = [&](std::size_t at) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(state.data() + at));
    };
    const __m128i cdab = _mm_shuffle_epi32(load(0), 0xB1);
    const __m128i efgh = _mm_shuffle_epi32(load(4), 0x1B);
    __m128i abef = _mm_alignr_epi8(cdab, efgh, 8);
    __m128i cdgh = _mm_blend_epi16(efgh, cdab, 0xF0);
    for (; count != 0; --count, blocks += kBlock) {
        const __m128i abefBefore = abef;
        const __m128i cdghBefore = cdgh;
        __m128i words[4];
        for (int at = 0; at < 16; ++at) {
            __m128i& four = words[at % 4];
            if (at < 4) {
                four = _mm_shuffle_epi8(
                    _mm_loadu_si128(reinterpret_cast<const __m128i*>(blocks) + at), turned);
            } else {
                const __m128i last = words[(at + 3) % 4];
                four = _mm_add_epi32(_mm_sha256msg1_epu32(four, words[(at + 1) % 4]),
                                     _mm_alignr_epi8(last, words[(at + 2) % 4], 4));
                four = _mm_sha256msg2_epu32(four, last);
            }
            __m128i keyed = _mm_add_epi32(
                four, _mm_load_si128(reinterpret_cast<const __m128i*>(kConstants) + at));
            cdgh = _mm_sha256rnds2_epu32(cdgh, abef, keyed);
            keyed = _mm_shuffle_epi32(keyed, 0x0E);
            abef = _mm_sha256rnds2_epu32(abef, cdgh, keyed);
        }
        abef = _mm_add_epi32(abef, abefBefore);
        cdgh = _mm_add_epi32(cdgh, cdghBefore);
    }
    const __m128i feba = _mm_shuffle_epi32(abef, 0x1B);
    const __m128i dchg = _mm_shuffle_epi32(cdgh, 0xB1);
    auto* const target = reinterpret_cast<__m128i*>(state.data());
    _mm_storeu_si128(target, _mm_blend_epi16(feba, dchg, 0xF0));
    _mm_storeu_si128(target + 1, _mm_alignr_epi8(dchg, feba, 8));
}
#else
void Sha256::takeFast(State& state, const unsigned char* blocks, std::size_t count) {
    takePlain(state, blocks, count);
}
#endif

void Sha256::add(std::span<const char> bytes) {
    const auto* from = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t left = bytes.size();
    total_ += left;
    if (restBytes_ != 0) {
        const std::size_t some = std::min(left, kBlock - restBytes_);
        std::memcpy(rest_.data() + restBytes_, from, some);
        restBytes_ += some;
        from += some;
        left -= some;
        if (restBytes_ != kBlock) return;
        take_(state_, rest_.data(), 1);
        restBytes_ = 0;
    }
    take_(state_, from, left / kBlock);
    from += left / kBlock * kBlock;
    restBytes_ = left % kBlock;
    if (restBytes_ != 0) std::memcpy(rest_.data(), from, restBytes_);
}

std::string Sha256::digits() {
    const uint64_t bits = total_ * 8;
    constexpr char kPadding[kBlock] = {'\x80'};
    constexpr std::size_t kLengthAt = 56;
    add({kPadding, (restBytes_ < kLengthAt ? kLengthAt : kBlock + kLengthAt) - restBytes_});
    std::array<char, 8> length;
    for (std::size_t at = 0; at < 8; ++at) length[at] = static_cast<char>(bits >> (56 - 8 * at));
    add(length);
    std::string text;
    for (const uint32_t word : state_) {
        for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789abcdef"[word >> shift & 15];
    }
    return text;
}

}  // namespace program
