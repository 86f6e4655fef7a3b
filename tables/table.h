// The table at hand: its header line, its items, and what the records need to know of them.
#ifndef TABLES_TABLE_H
#define TABLES_TABLE_H

#include <vector>

#include "tables/item_definition.h"
#include "tables/target.h"

namespace intake {

class RecordText;

struct TableHeader {
    FixedText<32> name;
    FixedText<2> external;  // "XX" if the data lies in a file of the coverage
    int32_t storedItems = 0;
    int32_t definitions = 0;  // redefined items included
    int32_t recordLength = 0;
    int32_t records = 0;

    bool isExternal() const { return external.view() == "XX"; }
};
TableHeader readTableHeader(const Line& line);

struct IndexedItem {
    int32_t number;     // as the line says it
    std::size_t place;  // of the line, from 0
};

struct Table {
    Handle handle = 0;
    TableName TBLNAM;
    TableHeader header;
    std::string_view routine;  // "(IMPINF)" or "(IM1INF)", for messages
    std::vector<QxItemDescriptor> ITMTAB;
    std::vector<IndexedItem> IDXLST;
    int64_t textLength = 0;   // of a record's text
    int64_t textColumns = 0;  // of the lines that it takes, 0 where no item is stored
    // Tables of statistics beside a grid: 0 none, 1 in reals of four bytes, 2 of eight.
    int32_t statisticsMode = 0;
    // The width and output width of the last item line; one pair for the whole table.
    int32_t keptWidth = 0;
    int32_t keptOutputWidth = 0;

    // Bytes that a record's items need, or the header's length if that is more.
    std::size_t recordBytes() const;
    // Ends the import where more items are stored than defined.
    void checkItemCount() const;
    // Takes the lines of a record's text. Ends the import for a count below 0, and for records that
    // the text of the file does not justify.
    void checkRecordCount(int64_t lines);
};

// The shape that items of statistics take in a mode.
struct StatisticsShape {
    int32_t width;
    int32_t outputWidth;
};
inline constexpr StatisticsShape statisticsShape(int32_t mode) {
    return mode == 1 ? StatisticsShape{4, 10} : StatisticsShape{8, 15};
}

// Defines the table under its name. False where that cannot be, which is told; the reason is one of
// the machine unless the name is taken, and ends the import without success.
bool defineTable(Table& table, const Target& target, Status& status);

// Reads the item lines and adds their items to the table. gridMode is the statistics mode of a
// table of statistics, 0 where the target is no grid.
void readItems(Table& table, const Name& dataset, const Target& target, int32_t gridMode);

// Builds the indexes that the item lines ask for.
void buildIndexes(const Table& table);

// The records, in the current form and the older one.
void readRecords(Table& table);
// One record of the current form, whose text has been read and whose bytes are put into a buffer
// of recordBytes(): the careful walk, that finds every fault.
void readRecord(Table& table, const RecordText& text, int32_t number,
                std::vector<std::byte>& record);
void readOlderRecords(Table& table);

// Ends the import where a record could not be stored.
void checkStored(const Table& table, Status status);
// Stores a record that has been packed.
void putRecord(const Table& table, int32_t number, const std::vector<std::byte>& record);

// An ordinal: 1st, 2nd, 11th, 23rd.
void ORDNAM(const int32_t& number, FixedText<16>& text);

}  // namespace intake

#endif
