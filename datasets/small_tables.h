// The small tables of a coverage that are no attribute tables: its tolerances, and the texts and
// integers of its addresses. number and row are the number of the record in its file, from 1.
#ifndef DATASETS_SMALL_TABLES_H
#define DATASETS_SMALL_TABLES_H

#include <array>
#include <span>
#include <string_view>
#include <vector>

#include "datasets/range.h"
#include "host/qxbase/records.h"

namespace datasets {

struct Tolerance {
    int32_t row = 0;
    int32_t column1 = 0;
    int32_t column2 = 0;
    double value = 0;
};

// Read at once when the range is made: a table of which a part is damaged has a count and no rows.
class ToleranceCursor {
  public:
    using Element = Tolerance;
    explicit ToleranceCursor(std::string_view coverage);
    explicit operator bool() const { return count_ >= 0; }
    bool next() { return ++place_ <= rows_.size(); }
    const Tolerance& current() const { return rows_[place_ - 1]; }
    int32_t count() const { return count_ < 0 ? 0 : count_; }

  private:
    int32_t count_ = -1;
    std::vector<Tolerance> rows_;
    std::size_t place_ = 0;
};

struct AddressText {
    int32_t number = 0;
    std::string_view text;  // 8 characters
    int32_t value = 0;
};

struct AddressIntegers {
    int32_t number = 0;
    std::span<const std::array<int32_t, 4>> entries;
};

// The records of a file of words, read by number.
template <class Record>
class WordCursor {
  public:
    using Element = Record;
    WordCursor(std::string_view coverage, int32_t code, int32_t recordWords);
    explicit operator bool() const { return bool(handle_); }
    bool next();
    const Record& current() const { return record_; }
    int32_t count() const { return count_; }
    bool go(int32_t record) {
        record_.number = record - 1;
        return record > 0 && record <= count_;
    }

  private:
    Handle<vclose_> handle_;
    int32_t count_ = 0;
    Record record_;
    std::vector<int32_t> words_;
};

using Tolerances = Range<ToleranceCursor>;
using AddressTexts = Range<WordCursor<AddressText>>;
using AddressTable = Range<WordCursor<AddressIntegers>>;

// The tables of the coverage at a path; a range is false where it has no such file.
Tolerances tolerances(std::string_view coverage);
AddressTexts addressTexts(std::string_view coverage);
AddressTable addressIntegers(std::string_view coverage);

}  // namespace datasets

#endif
