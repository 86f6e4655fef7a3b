#include "tin/environment.h"

#include <bit>

#include "host/qxbase/byte_order.h"

namespace intake {

namespace {

constexpr int32_t kFirstIntegerVersion = 60200;

// The runs of the record, in its order. The version is turned as the word that it is, so that an
// integer never passes through a real; what lies behind it is not turned.
template <auto integers, auto singles, auto doubles>
void turn(TINENV& environment) {
    constexpr int32_t kIntegers = 7;
    constexpr int32_t kSingles = 3;
    constexpr int32_t kDoubles = 6;
    constexpr int32_t kVersions = 1;
    auto* bytes = reinterpret_cast<std::byte*>(&environment);
    integers(reinterpret_cast<int32_t*>(bytes), &kIntegers);
    singles(reinterpret_cast<float*>(bytes + offsetof(TINENV, lowestZ)), &kSingles);
    doubles(reinterpret_cast<double*>(bytes + offsetof(TINENV, box)), &kDoubles);
    integers(&environment.version, &kVersions);
}

}  // namespace

void environmentToFile(TINENV& environment) { turn<swi4nb_, swr4nb_, swd8nb_>(environment); }

void environmentFromFile(TINENV& environment) { turn<swi4bn_, swr4bn_, swd8bn_>(environment); }

float realVersion(int32_t version) {
    const int32_t major = version / 10000;
    const int32_t minor = version / 100 % 100;
    return static_cast<float>(0.01 * (version % 100) + 0.1 * minor + major);
}

int32_t versionWord(int32_t version) {
    return version >= kFirstIntegerVersion ? version : std::bit_cast<int32_t>(realVersion(version));
}

}  // namespace intake
