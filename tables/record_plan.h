// The walk through a record's text, planned once for a table in the current form.
//
// Precondition: all stored items are of known kinds, no table of statistics, and their fields lie
// within the record's lines. A record with a field that cannot be read, or a value that does not
// fit, is left to the careful walk of records.cpp, which finds what is wrong and says so; what is
// stored is the same either way.
#ifndef TABLES_RECORD_PLAN_H
#define TABLES_RECORD_PLAN_H

#include <vector>

#include "tables/record_text.h"
#include "tables/table.h"

namespace intake {

class RecordPlan {
  public:
    // Without a plan every record needs care. Dates and integers that are text are text from here
    // on, as they are behind the first record.
    RecordPlan(Table& table, int64_t lines);

    // Reads a record and stores it; false, and nothing is stored, if it needs care. A record that
    // cannot be written ends the import.
    bool put(const Table& table, const RecordText& text, int32_t number);

  private:
    enum class Fields : uint8_t { kSingles4, kSingles2, kSingle, kDouble, kShort, kLong };
    struct Step {
        Fields fields;
        std::size_t place;  // in the text, from 0
        std::size_t value;
    };
    bool read(const Step& step, const RecordText& text);
    void joinSingles();

    std::vector<Step> steps_;
    std::vector<double> values_;
    bool made_ = false;
};

}  // namespace intake

#endif
