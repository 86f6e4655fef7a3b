// What a table is made of, as its definition file keeps it.
#ifndef COMPANIONS_QXFEAT_TABLE_DEFINITION_H
#define COMPANIONS_QXFEAT_TABLE_DEFINITION_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "companions/qxfeat/packed_words.h"
#include "host/qxfeat/table_reading.h"
#include "host/qxfeat/tables.h"

namespace qxfeat {

// The last byte of a record that an item may take.
inline constexpr int32_t kHighestEnd = 32766;
inline constexpr std::size_t kMostItems = 9999;
// Those that carry the name of their coverage are as long as that of a table.
inline constexpr std::size_t kLongestItemName = QX_TABLE_NAME_LENGTH;

struct TableItem {
    std::string name;
    std::string alternateName;
    QxItem item{};
    int32_t offset = 0;  // of its bytes in the stored record, from 0
    // A stored item that shares bytes with one defined before it is moved behind the record proper,
    // so that each keeps its value.
    bool moved = false;
};

struct TableDefinition {
    std::string name;
    std::string externalPath;  // of the records, from the workspace on; empty for none
    int32_t recordLength = 0;  // bytes that the items span, rounded up to an even number
    int32_t storedLength = 0;  // the same with the items that were moved
    std::vector<TableItem> items;

    // Adds an item, and settles whether it is moved. The items before it must have been added too.
    void add(TableItem item);
    // Settles the record's length and where each item lies in it.
    void layOut();
    // What storedLength is, or will be.
    int32_t storedBytes() const;

    // In the place of what is there, or to a file that was just made, which goes if that fails.
    bool write(const std::string& path) const;
    bool writeNew(store::File file) const;
    // False if the file is none, or says what cannot be.
    bool read(const std::string& path);

  private:
    PackedWriter packed() const;
    bool take(const QxItemDescriptor& item);

    // The bytes that stored items take, as runs from the first byte to behind the last, and the
    // places of those items by their keys.
    std::map<int32_t, int32_t> taken_;
    std::set<uint64_t> places_;
};

bool isTextType(int32_t type);
// Whether two descriptors name the same bytes in the same manner.
bool samePlace(const QxItemDescriptor& left, const QxItemDescriptor& right);
// The same for two descriptors of the same place.
uint64_t placeKey(const QxItemDescriptor& item);

}  // namespace qxfeat

#endif
