// Inserts the rows of a table, several with one statement: what SQLite does once a statement is a
// good part of the work for a small row.
#ifndef FORMATS_GEOPACKAGE_ROWS_H
#define FORMATS_GEOPACKAGE_ROWS_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "formats/geopackage/database.h"
#include "formats/writer.h"

namespace formats::geopackage {

class Rows {
  public:
    // A table of so many columns.
    Rows(const Database& database, const std::string& table, std::size_t columns);

    // The cells of a row one after the other. Bytes and texts are copied; what was gathered is
    // inserted when there is enough of it, at the latest by end().
    void add(const Value& value);
    // A blob that is made by appending to the bytes.
    template <class Make>
    void addBlob(Make make) {
        const std::size_t start = bytes_.size();
        make(bytes_);
        cells_.push_back(Bytes{start, bytes_.size() - start, true});
        endCell();
    }
    void end();

  private:
    // Where something lies among the bytes.
    struct Bytes {
        std::size_t start;
        std::size_t size;
        bool blob;
    };
    using Cell = std::variant<std::monostate, int64_t, double, Bytes>;

    void endCell();
    void bind(Statement& statement, std::size_t firstCell, std::size_t count) const;
    Bytes kept(std::string_view text);

    std::size_t columns_;
    std::size_t rowsAtOnce_;
    Statement one_;
    Statement many_;
    std::vector<Cell> cells_;
    std::vector<std::byte> bytes_;
};

}  // namespace formats::geopackage

#endif
