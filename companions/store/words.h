// Words in file byte order. Every stored file is big-endian.
#ifndef COMPANIONS_STORE_WORDS_H
#define COMPANIONS_STORE_WORDS_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace store {

inline uint16_t turned(uint16_t word) {
    if constexpr (std::endian::native == std::endian::little) return __builtin_bswap16(word);
    return word;
}
inline uint32_t turned(uint32_t word) {
    if constexpr (std::endian::native == std::endian::little) return __builtin_bswap32(word);
    return word;
}
inline uint64_t turned(uint64_t word) {
    if constexpr (std::endian::native == std::endian::little) return __builtin_bswap64(word);
    return word;
}

template <class T>
using Bits = std::conditional_t<sizeof(T) == 8, uint64_t,
                                std::conditional_t<sizeof(T) == 4, uint32_t, uint16_t>>;

// One number of 2, 4 or 8 bytes to or from a place in a file's bytes.
template <class T>
void put(std::byte* place, T value) {
    const Bits<T> word = turned(std::bit_cast<Bits<T>>(value));
    std::memcpy(place, &word, sizeof word);
}
template <class T>
T get(const std::byte* place) {
    Bits<T> word;
    std::memcpy(&word, place, sizeof word);
    return std::bit_cast<T>(turned(word));
}

// Runs of numbers; the place holds values.size() of them.
template <class T>
void putAll(std::byte* place, std::span<const T> values) {
#pragma GCC unroll 4
    for (const T value : values) {
        put(place, value);
        place += sizeof(T);
    }
}
template <class T>
void getAll(const std::byte* place, std::span<T> values) {
    for (T& value : values) {
        value = get<T>(place);
        place += sizeof(T);
    }
}

// Turns words in place.
template <class T>
void turnAll(T* words, std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
        words[index] = std::bit_cast<T>(turned(std::bit_cast<Bits<T>>(words[index])));
    }
}

// Writes fields one behind the other.
class WordWriter {
  public:
    explicit WordWriter(std::byte* place) : place_(place) {}
    template <class T>
    WordWriter& operator<<(T value) {
        put(place_, value);
        place_ += sizeof(T);
        return *this;
    }
    std::byte* place() const { return place_; }

  private:
    std::byte* place_;
};

class WordReader {
  public:
    explicit WordReader(const std::byte* place) : place_(place) {}
    template <class T>
    WordReader& operator>>(T& value) {
        value = get<T>(place_);
        place_ += sizeof(T);
        return *this;
    }
    const std::byte* place() const { return place_; }

  private:
    const std::byte* place_;
};

}  // namespace store

#endif
