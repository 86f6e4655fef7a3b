// How containers begin. Needs no library, so that a program can look before it loads one.
#ifndef CONTAINERS_MAGIC_H
#define CONTAINERS_MAGIC_H

#include <cstddef>
#include <string_view>

namespace containers {

// As many first bytes as tell every container.
constexpr std::size_t kStartBytes = 512;

// A tar header carries the sum of its bytes, its own field taken as blanks; old ones carry no
// other mark.
inline bool beginsTar(std::string_view start) {
    constexpr std::size_t kSumAt = 148;
    constexpr std::size_t kSumBytes = 8;
    if (start.size() < kStartBytes || start[0] == '\0') return false;
    long sum = 0;
    long signedSum = 0;
    for (std::size_t index = 0; index < kStartBytes; ++index) {
        const bool own = index >= kSumAt && index < kSumAt + kSumBytes;
        const char byte = own ? ' ' : start[index];
        sum += static_cast<unsigned char>(byte);
        signedSum += static_cast<signed char>(byte);
    }
    std::string_view field = start.substr(kSumAt, kSumBytes);
    while (!field.empty() && field.front() == ' ') field.remove_prefix(1);
    long stored = 0;
    std::size_t digits = 0;
    for (; digits < field.size() && field[digits] >= '0' && field[digits] <= '7'; ++digits) {
        stored = stored * 8 + (field[digits] - '0');
    }
    return digits > 0 && (stored == sum || stored == signedSum);
}

// The name of the container that starts so, "" for none.
inline std::string_view containerOf(std::string_view start) {
    using namespace std::string_view_literals;
    struct Magic {
        std::string_view bytes;
        std::string_view name;
    };
    constexpr Magic kTable[] = {
        {"\x1f\x8b"sv, "gzip"},    {"\x1f\x9d"sv, "compress"},        {"BZh"sv, "bzip2"},
        {"\xfd\x37zXZ\0"sv, "xz"}, {"\x28\xb5\x2f\xfd"sv, "zstd"},    {"PK\x03\x04"sv, "zip"},
        {"PK\x05\x06"sv, "zip"},   {"PK\x07\x08PK\x03\x04"sv, "zip"},
    };
    for (const auto& [bytes, name] : kTable) {
        if (!start.starts_with(bytes)) continue;
        // A digit stands behind these three letters, and then the digits of a circle or of its
        // root.
        const bool sure =
            name != "bzip2" || (start.size() >= 10 && (start.substr(4, 6) == "1AY&SY" ||
                                                       start.substr(4, 6) == "\x17rE8P\x90"));
        if (sure) return name;
    }
    return beginsTar(start) ? "tar"sv : ""sv;
}

}  // namespace containers

#endif
