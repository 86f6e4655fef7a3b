#include "tables/table.h"

#include <algorithm>
#include <set>
#include <string>
#include <tuple>

#include "host/qxfeat/table_names.h"
#include "host/qxfeat/table_reading.h"
#include "stream/format.h"
#include "stream/reader.h"
#include "stream/report.h"
#include "tables/state.h"

namespace intake {

namespace {

// A table without any text would fill the disk by its record count alone, and so would wide records
// of short text. What an import stores beyond these bytes for a column of text is counted.
constexpr int32_t kHighestCountWithoutText = 1000000;
constexpr int64_t kRecordBytesPerColumn = 4;
constexpr int64_t kIndexBytesPerColumn = 8;
constexpr int64_t kMostBytesWithoutText = 16 << 20;
// Each index reads all records once more, which takes time as bytes take disk.
constexpr int64_t kReadBytesPerColumn = 64;
constexpr int64_t kMostBytesReadAgain = int64_t{4} << 30;

// Adds to a count what each record of the table takes beyond what its text justifies; false, and
// nothing is added, where the count would become more than the import has.
bool count(const Table& table, int64_t bytes, int64_t justified, int64_t& counted, int64_t most) {
    const int64_t more = (bytes - justified) * table.header.records;
    if (more <= 0) return true;
    if (more > most - counted) return false;
    counted += more;
    return true;
}

bool hasRoomFor(const Table& table, int64_t bytes, int64_t justified) {
    return count(table, bytes, justified, tablesState.bytesWithoutText, kMostBytesWithoutText);
}

bool hasTimeFor(const Table& table, int64_t bytes, int64_t justified) {
    return count(table, bytes, justified, tablesState.bytesReadAgain, kMostBytesReadAgain);
}

// Bytes that an index takes for a record: its key, a real of 8 bytes for numbers, and its number.
int64_t indexBytes(const QxItemDescriptor& item) { return std::max(item.width, 8) + 4; }

// What an item adds to the length of a record's text. An unknown type adds as much as the widest
// real, and a date eight columns whatever its width. Stays.
int32_t textColumns(int32_t type, int32_t width) {
    switch (type) {
        case QX_ITEM_DATE:
            return 8;
        case QX_ITEM_CHARACTER:
        case QX_ITEM_INTEGER_TEXT:
            return width;
        case QX_ITEM_NUMBER_TEXT:
            return 14;
        case QX_ITEM_INTEGER:
            return width > 2 ? 11 : 6;
        case QX_ITEM_REAL:
            return width > 4 ? 24 : 14;
        default:
            return 24;
    }
}

// Items that carry the coverage's name take that of the target.
class ItemNames {
  public:
    ItemNames(const Table& table, const Name& dataset, const Target& target)
        : source_(splitTableName(table.header.name.view()).base), target_(target.name.view()) {
        if (target.kind != kTablesOfCoverage || source_ == target_) return;
        FixedText<13> subclass;
        int32_t belongs = 0;
        Status status = kSuccess;
        call(ruscls_, dataset, table.TBLNAM, subclass, belongs, status);
        renaming_ = belongs <= 0;
    }
    TableName operator()(std::string_view name) const {
        for (const std::string_view ending : {"#", "-ID"}) {
            if (renaming_ && name == source_ + std::string(ending)) {
                return std::string_view(target_ + std::string(ending));
            }
        }
        return name;
    }

  private:
    std::string source_;
    std::string target_;
    bool renaming_ = false;
};

}  // namespace

TableHeader readTableHeader(const Line& line) {
    TableHeader header;
    read<"A32,A2,3I4,I10">(line, header.name, header.external, header.storedItems,
                           header.definitions, header.recordLength, header.records);
    return header;
}

std::size_t Table::recordBytes() const {
    int32_t bytes = std::max(header.recordLength, 0);
    int32_t place = 0;
    for (const QxItemDescriptor& item : ITMTAB) {
        bytes = std::max(bytes, item.start - 1 + item.width);
        if (statisticsMode != 0) {
            place += statisticsShape(statisticsMode).width;
            bytes = std::max(bytes, place);
        }
    }
    // Records have an even number of bytes.
    bytes += bytes % 2;
    return static_cast<std::size_t>(bytes);
}

void Table::checkItemCount() const {
    if (header.storedItems < 0 || static_cast<std::size_t>(header.storedItems) > ITMTAB.size()) {
        fatal(std::string("Invalid item count ").append(routine));
    }
}

void Table::checkRecordCount(int64_t lines) {
    constexpr int64_t kColumns{Line::kLength};
    textColumns = header.storedItems > 0 ? std::max<int64_t>(lines, 0) * kColumns : 0;
    int32_t stored = 0;
    call(inflen_, handle, stored);
    const bool tooMany = textColumns == 0 && header.records > kHighestCountWithoutText;
    if (header.records < 0 || tooMany ||
        !hasRoomFor(*this, stored, kRecordBytesPerColumn * textColumns)) {
        fatal(std::string("Invalid record count ").append(routine));
    }
}

bool defineTable(Table& table, const Target& target, Status& status) {
    call(infdef_, table.TBLNAM, target.directory, target.prefix, 0, table.handle, status);
    if (status == kSuccess) return true;
    if (status == QX_TABLE_TAKEN) {
        nonftl("%1% already exists", table.TBLNAM);
    } else {
        nonftl("Unable to create table %1%.", table.TBLNAM);
    }
    return false;
}

void readItems(Table& table, const Name& dataset, const Target& target, int32_t gridMode) {
    const ItemNames newName(table, dataset, target);
    int32_t statisticsStart = 1;
    Line line;
    for (int32_t number = 1; number <= table.header.definitions; ++number) {
        IMPLIN(line);
        ItemDefinition ITMDEF;
        IMPITM(line, ITMDEF);
        const QxItemDescriptor item = {ITMDEF.start, ITMDEF.width, ITMDEF.type, ITMDEF.decimals,
                                       ITMDEF.outputWidth};
        if (ITMDEF.indexed) table.IDXLST.push_back({ITMDEF.number, table.ITMTAB.size()});
        QxItemDescriptor kept = item;
        FixedText<8> suffix;
        if (gridMode != 0) call(eextsns_, table.TBLNAM, suffix);
        table.statisticsMode = suffix.view() == ".STA" ? gridMode : 0;
        if (table.statisticsMode != 0) {
            table.keptWidth = item.width;
            table.keptOutputWidth = item.outputWidth;
            const StatisticsShape shape = statisticsShape(table.statisticsMode);
            // Items of the new width lie one behind the other, as the records have them.
            kept.start = statisticsStart;
            kept.width = shape.width;
            kept.outputWidth = shape.outputWidth;
            statisticsStart += shape.width;
        }
        Status status = item.width < 0 ? kReported : kSuccess;
        if (status == kSuccess)
            call(infadi_, table.handle, static_cast<int32_t>(ITMDEF.redefined()),
                 newName(ITMDEF.name.view()), ITMDEF.alternateName, FixedText<16>(), kept.type,
                 kept.width, kept.outputWidth, kept.decimals, int32_t{ITMDEF.column26},
                 int32_t{ITMDEF.column37}, int32_t{ITMDEF.columns38to39},
                 int32_t{ITMDEF.columns20to21}, int32_t{ITMDEF.columns40to43},
                 int32_t{ITMDEF.columns44to47}, kept.start, status);
        if (status != kSuccess) {
            fatal(std::string("Error in adding item ").append(table.routine));
        }
        table.ITMTAB.push_back(item);
        if (!ITMDEF.redefined()) table.textLength += textColumns(item.type, item.width);
    }
}

void buildIndexes(const Table& table) {
    // An item that is asked for again has its index already.
    std::set<std::tuple<std::string, int32_t, int32_t, int32_t>> asked;
    int32_t recordBytes = 0;
    call(inflen_, table.handle, recordBytes);
    int64_t bytes = 0;
    int64_t bytesRead = 0;
    bool tooMany = false;
    for (const IndexedItem& indexed : table.IDXLST) {
        Name path;
        QxItemDescriptor item = table.ITMTAB[indexed.place];
        if (indexed.number >= 1) {
            const auto place = static_cast<std::size_t>(indexed.number) - 1;
            if (place >= table.ITMTAB.size()) continue;
            call(infxnm_, table.handle, indexed.number, path);
            item = table.ITMTAB[place];
        }
        if (!asked.emplace(path.view(), item.start, item.width, item.type).second) continue;
        const auto left = [&](int64_t bytesPerColumn, int64_t taken) {
            return std::max<int64_t>(bytesPerColumn * table.textColumns - taken, 0);
        };
        if (!hasTimeFor(table, recordBytes, left(kReadBytesPerColumn, bytesRead)) ||
            !hasRoomFor(table, indexBytes(item), left(kIndexBytesPerColumn, bytes))) {
            tooMany = true;
            continue;
        }
        bytes += indexBytes(item);
        bytesRead += recordBytes;
        // An index that cannot be built is not told. Stays.
        Status status = kSuccess;
        call(inxitm_, path, table.handle, item, status);
    }
    if (tooMany) warn("Too many indexes in %1% %2%", table.TBLNAM, table.routine);
}

void checkStored(const Table& table, Status status) {
    if (status == kSuccess) return;
    fatal(std::string("Could not write DF record ").append(table.routine));
}

void putRecord(const Table& table, int32_t number, const std::vector<std::byte>& record) {
    Status status = kSuccess;
    call(infput_, table.handle, number, record, status);
    checkStored(table, status);
}

}  // namespace intake
