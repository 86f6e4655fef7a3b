// The columns of an attribute table as a format takes them, alone or behind those of a feature.
#ifndef APP_INTAKE_EXPORT_TABLE_COLUMNS_H
#define APP_INTAKE_EXPORT_TABLE_COLUMNS_H

#include <deque>
#include <string>
#include <vector>

#include "app/intake/export/decoder.h"
#include "datasets/tables.h"
#include "formats/writer.h"

namespace program {

// One look through the table decides for each column: dates are dates and numbers kept as text
// numbers where every record agrees, else texts; texts are UTF-8 where all of them are valid.
class TableColumns {
  public:
    // No table, no columns.
    TableColumns() = default;
    TableColumns(const datasets::TablePlace& place, bool redefined);

    datasets::Table& table() { return table_; }
    // Appends the columns' definitions.
    void define(std::vector<formats::Column>& columns) const;
    // Appends a value for each column; texts are valid until the next call.
    void append(const datasets::Row& row, Decoder& decoder, std::vector<formats::Value>& values);
    // The same for a record number; nothing for each column if there is no such record.
    void append(int32_t record, Decoder& decoder, std::vector<formats::Value>& values);

  private:
    struct Plan {
        std::size_t place;
        formats::Column column;
        bool isUtf8 = true;
    };
    void look();

    datasets::Table table_{datasets::TablePlace{}};
    std::vector<Plan> plans_;
    std::deque<std::string> rooms_;  // of decoded texts, one a column
};

}  // namespace program

#endif
