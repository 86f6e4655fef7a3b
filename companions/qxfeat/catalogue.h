// The catalogue of a workspace's tables: the file that says which tables there are.
//
// Tables are kept under numbers, so that a table's name is never part of a path. The catalogue is a
// log: a table that is made or erased is an entry behind the others, so that a workspace of many
// tables is made in a time that grows with their number. A number is taken when a table is defined,
// by its definition file, which must be new; the table is listed when it is closed, so that an
// import that is killed leaves whole tables in the list and no others.
//
// The catalogue is changed while a lock is held, so that several processes can change it at the
// same time. A reader takes no lock and passes over an entry that is not whole. The lock is the
// kernel's: a process that dies holding it has let it go. What was read is kept, and only what was
// appended since is read again: a workspace of thousands of tables costs no more than an empty one.
#ifndef COMPANIONS_QXFEAT_CATALOGUE_H
#define COMPANIONS_QXFEAT_CATALOGUE_H

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "companions/qxfeat/table_numbers.h"
#include "companions/store/file.h"

namespace qxfeat {

struct Catalogue {
    using Entry = TableNumbers::Entry;
    static constexpr int32_t kDoubleStatistics = 8;
    // What is kept of all while an import runs comes to some megabytes.
    static constexpr std::size_t kMostTables = 32768;
    static constexpr std::size_t kMostNameBytes = 2 << 20;

    bool sound = true;  // false if it cannot be understood; none at all is an empty one
    int32_t nextNumber = 1;
    int32_t statisticsBytes = kDoubleStatistics;  // bytes of a real in tables of statistics
    TableNumbers numbers;

    // The number of a table; 0 for none.
    int32_t find(std::string_view name) const { return numbers.find(name); }
    // Whether one more table can be listed.
    bool hasRoomFor(std::string_view name) const {
        return numbers.size() < kMostTables && numbers.nameBytes() + name.size() <= kMostNameBytes;
    }
    // In the order of their definition, good for as long as the catalogue is.
    std::vector<Entry> entries() const { return numbers.entries(); }
};

// The catalogue of a directory of tables as it is now, good until the next call. Of one that was
// read before only the change is read. One that is damaged holds what can be read of it.
const Catalogue& readCatalogue(const std::string& directory);
// Closes the files of the catalogue that is being changed. What was read is kept, if it is sound.
void settleCatalogue();

// The right to change the catalogue, for as long as it lives. One at a time in a process.
class CatalogueLock {
  public:
    explicit CatalogueLock(const std::string& directory);
    ~CatalogueLock();
    CatalogueLock(const CatalogueLock&) = delete;
    CatalogueLock& operator=(const CatalogueLock&) = delete;
    bool held() const { return held_; }

  private:
    bool held_ = false;
};

// Takes the next number of which there is no table, by its definition file. 0, and noted as a
// failed write, if there is none, or the catalogue could not list a table.
struct TakenNumber {
    int32_t number = 0;
    store::File definition;
};
TakenNumber takeNumber(const std::string& directory);

// Lists a table whose files are whole by now. False, and noted as a failed write, if that cannot
// be.
bool enterTable(const std::string& directory, int32_t number, const std::string& name);

// Erases a table of the catalogue that readCatalogue has given last, with the lock held. False, and
// it stays as it was, if that could not be written.
bool removeTable(const std::string& name);

// Erases tables and lists others, all at once: the catalogue is written anew. What is erased or
// listed already stays so. False, and noted as a failed write, if that cannot be.
struct Listing {
    int32_t number = 0;
    std::string name;
};
bool changeTables(const std::string& directory, std::span<const Listing> erased,
                  std::span<const Listing> entered);

// Writes a catalogue that is damaged anew: with what readCatalogue has just read of it, and other
// tables. The lock is held.
bool rebuildCatalogue(std::span<const Listing> entered);

// The path of the catalogue itself.
std::string cataloguePath(const std::string& directory);

// The path of a table's file: "def", "dat", "xml", or "index" and the item's number.
std::string tableFile(const std::string& directory, int32_t number, std::string_view suffix);

}  // namespace qxfeat

#endif
