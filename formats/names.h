// Names out of files, made fit for where they go.
#ifndef FORMATS_NAMES_H
#define FORMATS_NAMES_H

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "formats/writer.h"

namespace formats {

// ASCII letters in lower case, all else as it is: what SQLite takes for the same name.
std::string folded(std::string_view name);

// Gives each name once, regardless of case: ROADS, roads_2, Roads_3.
class UniqueNames {
  public:
    UniqueNames() = default;
    // With names that are taken already.
    UniqueNames(std::initializer_list<std::string_view> taken);
    std::string take(std::string_view name);
    // Takes a name as it is; false if it is gone.
    bool takeExactly(std::string_view name) { return taken_.insert(folded(name)).second; }

  private:
    std::unordered_set<std::string> taken_;
};

// The names of columns beside the keys fid and geom, and one more if that is not empty; each once.
// An empty one becomes "column".
std::vector<std::string> columnNames(std::span<const Column> columns, std::string_view taken = {});

// Whether a path ends as one of these says (between blanks, in lower case), regardless of case.
bool hasEnding(std::string_view path, std::string_view endings);

// A name that every system takes for a file in a folder: no separators, controls or wildcards, no
// leading dot, none that belongs to a device, at most 100 bytes. Characters in UTF-8 stay.
std::string fileName(std::string_view name);

}  // namespace formats

#endif
