#include "formats/names.h"

#include <algorithm>
#include <array>

namespace formats {

namespace {

// Whatever follows a dot, these are devices on some systems.
bool namesDevice(std::string_view name) {
    constexpr std::array<std::string_view, 4> kDevices{"con", "prn", "aux", "nul"};
    const std::string stem = folded(name.substr(0, name.find('.')));
    if (stem.size() == 4 && stem[3] >= '0' && stem[3] <= '9') {
        return stem.starts_with("com") || stem.starts_with("lpt");
    }
    return std::ranges::find(kDevices, stem) != kDevices.end();
}

}  // namespace

std::string folded(std::string_view name) {
    std::string result(name);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return result;
}

UniqueNames::UniqueNames(std::initializer_list<std::string_view> taken) {
    for (const std::string_view name : taken) taken_.insert(folded(name));
}

std::string UniqueNames::take(std::string_view name) {
    std::string result(name);
    for (int count = 2; !takeExactly(result); ++count) {
        result = std::string(name) + "_" + std::to_string(count);
    }
    return result;
}

std::vector<std::string> columnNames(std::span<const Column> columns, std::string_view taken) {
    UniqueNames unique{"fid", "geom", taken};
    std::vector<std::string> names;
    for (const Column& column : columns) {
        // A text of C ends at a zero, and what follows would be lost.
        const std::string_view name =
            std::string_view(column.name).substr(0, column.name.find('\0'));
        names.push_back(unique.take(name.empty() ? "column" : name));
    }
    return names;
}

bool hasEnding(std::string_view path, std::string_view endings) {
    const std::string name = folded(path);
    while (!endings.empty()) {
        const std::size_t blank = std::min(endings.find(' '), endings.size());
        const std::string_view ending = endings.substr(0, blank);
        if (name.size() > ending.size() && name.ends_with(ending)) return true;
        endings.remove_prefix(std::min(blank + 1, endings.size()));
    }
    return false;
}

std::string fileName(std::string_view name) {
    constexpr std::size_t kMostBytes = 100;
    std::string result;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const bool safe = byte > 0x20 && byte != 0x7f &&
                          std::string_view("/\\:*?\"<>|").find(c) == std::string_view::npos;
        result += safe ? c : '_';
    }
    if (result.size() > kMostBytes) {
        std::size_t end = kMostBytes;
        while (end > 0 && (static_cast<unsigned char>(result[end]) & 0xc0) == 0x80) --end;
        result.resize(end);
    }
    if (result.empty() || result.front() == '.') result.insert(0, "_");
    if (result.back() == '.') result.back() = '_';
    if (namesDevice(result)) result.insert(0, "_");
    return result;
}

}  // namespace formats
