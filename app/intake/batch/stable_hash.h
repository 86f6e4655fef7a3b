// A hash that is the same in every run, on every machine and in every version.
#ifndef APP_INTAKE_BATCH_STABLE_HASH_H
#define APP_INTAKE_BATCH_STABLE_HASH_H

#include <cstdint>
#include <string_view>

namespace program {

// FNV-1a of 64 bits, its bits mixed once more so that a remainder has something of all of them.
constexpr uint64_t stableHash(std::string_view text, uint64_t seed = 0) {
    uint64_t hash = 0xcbf29ce484222325U ^ seed;
    for (const char each : text) {
        hash ^= static_cast<unsigned char>(each);
        hash *= 0x100000001b3U;
    }
    hash ^= hash >> 33;
    hash *= 0xff51afd7ed558ccdU;
    hash ^= hash >> 33;
    hash *= 0xc4ceb9fe1a85ec53U;
    return hash ^ hash >> 33;
}

}  // namespace program

#endif
