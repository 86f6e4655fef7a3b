// The numbers of tables by their names: a hash table over one run of characters, so that a
// catalogue of thousands of tables is read in little time and memory.
#ifndef COMPANIONS_QXFEAT_TABLE_NUMBERS_H
#define COMPANIONS_QXFEAT_TABLE_NUMBERS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qxfeat {

class TableNumbers {
  public:
    struct Entry {
        int32_t number;
        std::string_view name;
    };

    // Room for so many names and bytes of them, before there are any.
    void reserve(std::size_t names, std::size_t bytes);
    // 0 for a name that is not there.
    int32_t find(std::string_view name) const;
    // Gives a name its number, which is not 0, in the place of the one that it has.
    void set(std::string_view name, int32_t number);
    void erase(std::string_view name);

    std::size_t size() const { return size_; }
    // Of all names.
    std::size_t nameBytes() const { return nameBytes_; }
    // In the order of their numbers, good until the next change.
    std::vector<Entry> entries() const;

  private:
    // A name that was erased keeps its place, with the number 0, until the table is made anew.
    struct Place {
        int32_t number;
        uint32_t start;
        uint32_t length;
        uint32_t hash;
    };

    std::string_view nameOf(const Place& place) const {
        return std::string_view(names_).substr(place.start, place.length);
    }
    // The slot that leads to the name, or the free one where it would be.
    std::size_t slotOf(std::string_view name, uint32_t hash) const;
    void makeRoom(std::size_t bytes);

    std::vector<Place> places_;
    std::vector<uint32_t> slots_;  // a place from 1, 0 for none; as many as a power of two
    std::string names_;
    std::size_t size_ = 0;
    std::size_t nameBytes_ = 0;
};

}  // namespace qxfeat

#endif
