// Inserts pairs of numbers, many with one statement: SQLite comes to the place of the first and
// finds those that follow beside it, in a third of the time.
#ifndef FORMATS_GEOPACKAGE_NUMBER_PAIRS_H
#define FORMATS_GEOPACKAGE_NUMBER_PAIRS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "formats/geopackage/database.h"

namespace formats::geopackage {

class NumberPairs {
  public:
    // Into a table of two columns; the first is its key. Pairs come in ascending order of it.
    NumberPairs(const Database& database, const std::string& table)
        : one_(database, "INSERT INTO " + quoted(table) + " VALUES (?, ?)"),
          many_(database, manyRows(table)) {}

    void add(int64_t first, int64_t second) {
        waiting_[count_++] = {first, second};
        if (count_ == kRows) {
            int place = 0;
            for (const Pair& pair : waiting_) {
                many_.bind(++place, pair.first);
                many_.bind(++place, pair.second);
            }
            many_.run();
            count_ = 0;
        }
    }
    // Inserts what still waits.
    void end() {
        for (std::size_t i = 0; i < count_; ++i) {
            one_.bind(1, waiting_[i].first);
            one_.bind(2, waiting_[i].second);
            one_.run();
        }
        count_ = 0;
    }

  private:
    static constexpr std::size_t kRows = 32;

    static std::string manyRows(const std::string& table) {
        std::string sql = "INSERT INTO " + quoted(table) + " VALUES (?, ?)";
        for (std::size_t i = 1; i < kRows; ++i) sql += ", (?, ?)";
        return sql;
    }

    struct Pair {
        int64_t first;
        int64_t second;
    };
    Statement one_;
    Statement many_;
    std::array<Pair, kRows> waiting_{};
    std::size_t count_ = 0;
};

}  // namespace formats::geopackage

#endif
