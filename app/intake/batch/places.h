// Where the outputs of inputs lie.
#ifndef APP_INTAKE_BATCH_PLACES_H
#define APP_INTAKE_BATCH_PLACES_H

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "app/intake/batch/hash_table.h"

namespace program {

// A path as a place below some folder: without what leads out of it.
std::string placeBelow(std::string_view path);

class Places {
  public:
    // Exported files go by the input's name without its endings, to which they add their own. A
    // workspace has the whole name, and so cannot meet a folder of the archive.
    explicit Places(bool wholeNames) : wholeNames_(wholeNames) {}

    // The place of the next input, given its own below the folder where it was found: the same
    // but, where it would meet one of before, also on a disk to which case is all one, for a
    // number: maps/roads_2.
    std::string take(std::string_view place);

  private:
    bool isFree(std::string_view place);

    bool wholeNames_;
    HashTable<Nothing> taken_;
    std::unordered_map<uint64_t, uint32_t> numbers_;  // of those that met
};

}  // namespace program

#endif
