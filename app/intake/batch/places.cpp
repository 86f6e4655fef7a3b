#include "app/intake/batch/places.h"

#include <cctype>

#include "app/intake/batch/stable_hash.h"
#include "containers/volume_names.h"

namespace program {

namespace {

uint64_t foldedHash(std::string_view text) {
    std::string folded(text);
    for (char& each : folded) {
        each = static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
    }
    return stableHash(folded);
}

// The bytes of a name before its endings: roads of roads.e00.gz.
std::size_t stemOf(std::string_view name) {
    const std::string_view plain = containers::withoutCompression(name);
    const std::size_t point = plain.rfind('.');
    return point == std::string_view::npos || point == 0 ? plain.size() : point;
}

}  // namespace

std::string placeBelow(std::string_view path) {
    std::string place;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (part.empty() || part == "." || part == "..") continue;
        if (!place.empty()) place += '/';
        place += part;
    }
    return place.empty() ? "input" : place;
}

bool Places::isFree(std::string_view place) {
    const std::size_t before = taken_.size();
    taken_[foldedHash(place)];
    return taken_.size() != before;
}

std::string Places::take(std::string_view place) {
    const std::size_t nameAt = place.rfind('/') + 1;  // 0 where there is no folder
    const std::size_t stemEnd = nameAt + stemOf(place.substr(nameAt));
    const std::string_view stem = place.substr(0, stemEnd);
    const std::string_view endings = wholeNames_ ? place.substr(stemEnd) : std::string_view();
    std::string whole = std::string(stem).append(endings);
    if (isFree(whole)) return whole;
    uint32_t& number = numbers_.try_emplace(foldedHash(whole), 1).first->second;
    do {
        whole = std::string(stem) + '_' + std::to_string(++number);
        whole.append(endings);
    } while (!isFree(whole));
    return whole;
}

}  // namespace program
