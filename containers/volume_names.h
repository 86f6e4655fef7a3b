// How the names of a file's volumes follow from one another.
#ifndef CONTAINERS_VOLUME_NAMES_H
#define CONTAINERS_VOLUME_NAMES_H

#include <string>
#include <string_view>
#include <vector>

namespace containers {

// The name with its last two digits counted on; "" where it does not end in two, or in 99.
std::string nextVolume(std::string_view name);

// Whether a name ends in the two digits that volumes are told by.
bool endsInTwoDigits(std::string_view name);

// A compressed file's name without the extension that says so: roads.e00 for roads.e00.gz.
std::string_view withoutCompression(std::string_view name);

// The names under which a volume may lie compressed, those like the first volume's name first.
std::vector<std::string> compressedNames(std::string_view volume, std::string_view first);

}  // namespace containers

#endif
