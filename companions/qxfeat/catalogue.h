// The catalogue of a workspace's tables: the file that says which tables there are.
//
// Tables are kept under numbers, so that a table's name is never part of a path. The catalogue is
// replaced whole while a lock is held, so that several processes can change it at the same time and
// a reader, who takes no lock, finds the old one or the new one. The lock is the kernel's: a
// process that dies holding it has let it go.
#ifndef COMPANIONS_QXFEAT_CATALOGUE_H
#define COMPANIONS_QXFEAT_CATALOGUE_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "companions/store/file.h"

namespace qxfeat {

struct Catalogue {
    struct Entry {
        int32_t number;
        std::string name;
    };
    static constexpr int32_t kDoubleStatistics = 8;

    int32_t nextNumber = 1;
    int32_t statisticsBytes = kDoubleStatistics;  // bytes of a real in tables of statistics
    std::vector<Entry> entries;                   // in the order of their definition

    const Entry* find(std::string_view name) const;
};

// False if there is a catalogue that cannot be understood; none at all is an empty one.
bool readCatalogue(const std::string& directory, Catalogue& catalogue);

// The right to change the catalogue, for as long as it lives.
class CatalogueLock {
  public:
    explicit CatalogueLock(const std::string& directory);
    bool held() const { return held_; }

  private:
    store::File file_;
    bool held_ = false;
};

// To be called with the lock held. False if it could not be written; the old one then stays.
bool replaceCatalogue(const std::string& directory, const Catalogue& catalogue);

// Puts a file in the place of another at once. False, and the old file stays, if that failed.
bool replaceFile(const std::string& path, std::span<const std::byte> bytes);

// The path of a table's file: "def", "dat", "xml", or "index" and the item's number.
std::string tableFile(const std::string& directory, int32_t number, std::string_view suffix);

}  // namespace qxfeat

#endif
