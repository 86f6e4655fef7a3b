#include "containers/volume_names.h"

#include <algorithm>
#include <cctype>

namespace containers {

namespace {

constexpr std::string_view kExtensions[] = {".gz", ".Z", ".bz2", ".xz", ".zst"};

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool endsIn(std::string_view name, std::string_view extension) {
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) ==
               std::tolower(static_cast<unsigned char>(b));
    };
    return name.size() > extension.size() &&
           std::equal(extension.rbegin(), extension.rend(), name.rbegin(), same);
}

}  // namespace

bool endsInTwoDigits(std::string_view name) {
    return name.size() >= 2 && isDigit(name[name.size() - 1]) && isDigit(name[name.size() - 2]);
}

std::string nextVolume(std::string_view name) {
    if (!endsInTwoDigits(name) || name.ends_with("99")) return {};
    std::string next(name);
    char& ones = next[next.size() - 1];
    char& tens = next[next.size() - 2];
    if (ones == '9') ++tens;
    ones = ones == '9' ? '0' : static_cast<char>(ones + 1);
    return next;
}

std::string_view withoutCompression(std::string_view name) {
    for (const std::string_view extension : kExtensions) {
        if (endsIn(name, extension)) return name.substr(0, name.size() - extension.size());
    }
    return name;
}

std::vector<std::string> compressedNames(std::string_view volume, std::string_view first) {
    const std::string start(volume);
    std::vector<std::string> names = {start +
                                      std::string(first.substr(withoutCompression(first).size()))};
    for (const std::string_view extension : kExtensions)
        names.push_back(start + std::string(extension));
    return names;
}

}  // namespace containers
