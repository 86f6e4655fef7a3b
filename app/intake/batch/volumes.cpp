#include "app/intake/batch/volumes.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "app/intake/looks_like.h"
#include "containers/volume_names.h"

namespace program {

namespace {

// "" for a first one.
std::string volumeBefore(std::string_view plainName) {
    if (!containers::endsInTwoDigits(plainName) || plainName.ends_with("00")) return {};
    std::string before(plainName);
    char& ones = before[before.size() - 1];
    char& tens = before[before.size() - 2];
    if (ones == '0') --tens;
    ones = ones == '0' ? '9' : static_cast<char>(ones - 1);
    return before;
}

// The names under which a volume beside a file may lie. Those of a file that is not compressed are
// neither.
std::vector<std::string> namesOf(const std::string& volume, std::string_view file) {
    std::vector<std::string> names;
    const bool compressed = containers::withoutCompression(file).size() != file.size();
    if (compressed) names = containers::compressedNames(volume, file);
    names.push_back(volume);
    return names;
}

bool isBeside(const std::string& volume, std::string_view file, const IsBeside& isThere) {
    if (volume.empty()) return false;
    const std::vector<std::string> names = namesOf(volume, file);
    return std::any_of(names.begin(), names.end(), isThere);
}

bool beginsAnother(const std::string& path) {
    constexpr std::size_t kStart = 80;
    std::string start(kStart, '\0');
    std::ifstream stream(path, std::ios::binary);
    stream.read(start.data(), static_cast<std::streamsize>(start.size()));
    start.resize(static_cast<std::size_t>(std::max<std::streamsize>(0, stream.gcount())));
    return hasHeaderLine(start);
}

}  // namespace

bool mayFollow(std::string_view name, const IsBeside& isThere) {
    return isBeside(volumeBefore(containers::withoutCompression(name)), name, isThere);
}

bool mayBeFollowed(std::string_view name, const IsBeside& isThere) {
    return isBeside(containers::nextVolume(containers::withoutCompression(name)), name, isThere);
}

std::vector<std::string> furtherVolumes(const std::string& path) {
    std::vector<std::string> found;
    std::string volume(containers::withoutCompression(path));
    while (!(volume = containers::nextVolume(volume)).empty()) {
        const std::vector<std::string> names = namesOf(volume, path);
        const auto there = std::find_if(names.begin(), names.end(), [](const std::string& name) {
            std::error_code ignored;
            return std::filesystem::is_regular_file(name, ignored);
        });
        if (there == names.end() || beginsAnother(*there)) break;
        found.push_back(*there);
    }
    return found;
}

void addStamp(Stamp& stamp, uint64_t size, int64_t modified) {
    stamp.size += size;
    stamp.modified = std::max(stamp.modified, modified);
}

}  // namespace program
