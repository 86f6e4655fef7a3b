// The SHA-256 of bytes (FIPS 180-4), with the instructions of the processor that are made for it
// where there are some.
#ifndef APP_INTAKE_BATCH_SHA256_H
#define APP_INTAKE_BATCH_SHA256_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace program {

class Sha256 {
  public:
    // Which way blocks are taken; both come to the same.
    enum class Way { kBest, kPlain };
    explicit Sha256(Way way = Way::kBest);

    void add(std::span<const char> bytes);
    // Of all bytes that were added, as 64 digits. Nothing may be added after it.
    std::string digits();

  private:
    using State = std::array<uint32_t, 8>;
    static void takePlain(State& state, const unsigned char* blocks, std::size_t count);
    static void takeFast(State& state, const unsigned char* blocks, std::size_t count);

    State state_;
    void (*take_)(State& state, const unsigned char* blocks, std::size_t count);
    std::array<unsigned char, 64> rest_{};
    std::size_t restBytes_ = 0;
    uint64_t total_ = 0;
};

}  // namespace program

#endif
