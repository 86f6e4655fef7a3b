// Attribute tables: their columns, and their records as a range of rows.
//
//     Table roads = table("workspace/ROADS.AAT");
//     for (const Column& column : roads.columns()) ...
//     for (const Row& row : roads) ... row[0] ...
#ifndef DATASETS_TABLES_H
#define DATASETS_TABLES_H

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "datasets/range.h"
#include "host/qxfeat/table_reading.h"

namespace datasets {

// How a column is kept, by the number that the table has for it. A damaged table may have others,
// whose values are bytes.
enum class ColumnType : int32_t {
    date = QX_ITEM_DATE,                 // text: eight digits
    characters = QX_ITEM_CHARACTER,      // text
    integerText = QX_ITEM_INTEGER_TEXT,  // text: digits, to the right
    numberText = QX_ITEM_NUMBER_TEXT,    // text: a number with its decimals, to the right
    integer = QX_ITEM_INTEGER,           // binary, 1, 2, 4 or 8 bytes
    real = QX_ITEM_REAL                  // binary, 4 or 8 bytes
};

struct Column {
    std::string name;
    std::string alternateName;
    ColumnType type = ColumnType::characters;
    int32_t width = 0;            // bytes
    int32_t decimals = 0;         // to be shown behind the point
    int32_t start = 0;            // its first byte in the record, from 1
    int32_t outputWidth = 0;      // characters when it is shown
    int32_t number = 0;           // place among the definitions, from 1; -1 for a redefined one
    bool redefined = false;       // names bytes of other columns once more
    bool indexed = false;         // has an index
    std::array<int32_t, 6> kept;  // as QxItem has it
};

// The text is the bytes as they are stored. A text that is no date has a year of 0.
struct Date {
    int32_t year = 0;
    int32_t month = 0;
    int32_t day = 0;
    std::string_view text;
};

// Nothing, a whole number, a real, bytes as they are stored, or a date.
using Value = std::variant<std::monostate, int64_t, double, std::string_view, Date>;

// A record. What it gives is valid until the table goes on to the next one.
class Row {
  public:
    // The record number, from 1.
    int32_t number() const { return number_; }
    std::size_t size() const { return columns_.size(); }

    // What the column of a place, from 0, says: a date; bytes; a whole number for binary integers
    // and for digits kept as text; a real for binary reals and for numbers kept as text. Nothing if
    // such a text is blank, and its bytes if it is no number.
    Value operator[](std::size_t column) const;
    // The same without a look into texts: bytes for dates and digits too, and 0 for a number kept
    // as text that is none.
    Value stored(std::size_t column) const;
    // The bytes of any column, blanks included.
    std::string_view bytes(std::size_t column) const;

  private:
    friend class TableCursor;

    int32_t table_ = 0;
    int32_t number_ = 0;
    std::span<const Column> columns_;
};

// Where a table is kept: the INFO directory of its workspace, and its name there.
struct TablePlace {
    std::string directory;
    std::string name;
    // What stands before the last point: the name of the dataset that the table belongs to, if
    // there is one. Empty for a name without a point.
    std::string_view owner() const {
        return std::string_view(name).substr(0, name.find('.') == name.npos ? 0 : name.rfind('.'));
    }
};

// The place of the table at a path: its workspace and, as the last part, its name.
TablePlace tablePlace(std::string_view path);

class TableCursor {
  public:
    using Element = Row;
    explicit TableCursor(const TablePlace& place);
    explicit operator bool() const { return bool(handle_); }
    bool next();
    const Row& current() const { return row_; }
    int32_t count() const { return count_; }
    bool go(int32_t record);

    // The columns in the order of their definition, redefined ones included.
    std::span<const Column> columns() const { return columns_; }
    // The place of the column of a name, from 0; of several the first; -1 if there is none.
    int32_t find(std::string_view column) const;
    int32_t recordLength() const { return recordLength_; }  // bytes
    // Whether the records lie in a file of a dataset and not beside the definition.
    bool external() const { return external_; }
    // The path of the table's metadata, a text file (side_texts.h) that need not be there.
    std::string metadataPath() const;

  private:
    Handle<infcls_> handle_;
    int32_t count_ = 0;
    int32_t recordLength_ = 0;
    bool external_ = false;
    bool gone_ = false;  // to a record, which is read already
    std::vector<Column> columns_;
    Row row_;
};

// An open table, which is the range of its rows; false where there is none. go(1) starts it anew.
using Table = Range<TableCursor>;
inline Table table(const TablePlace& place) { return Table(place); }
inline Table table(std::string_view path) { return Table(tablePlace(path)); }

class TableListCursor {
  public:
    using Element = TablePlace;
    TableListCursor(std::string_view directory, std::string_view owner);
    explicit operator bool() const { return bool(handle_); }
    bool next();
    const TablePlace& current() const { return place_; }
    int32_t count() const { return count_; }

  private:
    Handle<infend_> handle_;
    int32_t count_ = 0;
    TablePlace place_;
};
using TableList = Range<TableListCursor>;

// The tables that belong to the coverage, grid or stack at a path, and all of a workspace, in the
// order of their definition.
TableList tablesOf(std::string_view dataset);
TableList tablesIn(std::string_view workspace);

}  // namespace datasets

#endif
