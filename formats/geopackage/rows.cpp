#include "formats/geopackage/rows.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace formats::geopackage {

namespace {

constexpr std::size_t kRowsAtOnce = 16;
constexpr std::size_t kMostVariables = 32'000;  // of a statement; SQLite's own limit is above that
constexpr std::size_t kMostBytes = 1 << 18;

std::string insertion(const std::string& table, std::size_t columns, std::size_t rows) {
    std::string row = "(?";
    for (std::size_t i = 1; i < columns; ++i) row += ",?";
    row += ')';
    std::string sql = "INSERT INTO " + quoted(table) + " VALUES " + row;
    for (std::size_t i = 1; i < rows; ++i) sql += ',' + row;
    return sql;
}

}  // namespace

Rows::Rows(const Database& database, const std::string& table, std::size_t columns)
    : columns_(columns),
      rowsAtOnce_(std::clamp<std::size_t>(kMostVariables / columns, 1, kRowsAtOnce)),
      one_(database, insertion(table, columns, 1)),
      many_(database, insertion(table, columns, rowsAtOnce_)) {
    cells_.reserve(columns * rowsAtOnce_);
}

Rows::Bytes Rows::kept(std::string_view text) {
    const std::size_t start = bytes_.size();
    const auto added = std::as_bytes(std::span(text));
    bytes_.insert(bytes_.end(), added.begin(), added.end());
    return {start, text.size(), false};
}

void Rows::add(const Value& value) {
    if (const auto* integer = std::get_if<int64_t>(&value)) {
        cells_.emplace_back(*integer);
    } else if (const auto* real = std::get_if<double>(&value)) {
        cells_.emplace_back(*real);
    } else if (const auto* text = std::get_if<std::string_view>(&value)) {
        cells_.emplace_back(kept(*text));
    } else if (const auto* date = std::get_if<Date>(&value)) {
        std::array<char, 40> iso{};
        std::snprintf(iso.data(), iso.size(), "%04d-%02d-%02d", date->year, date->month, date->day);
        cells_.emplace_back(kept(iso.data()));
    } else {
        cells_.emplace_back();
    }
    endCell();
}

void Rows::endCell() {
    if (cells_.size() == columns_ * rowsAtOnce_) {
        bind(many_, 0, cells_.size());
        many_.run();
        cells_.clear();
        bytes_.clear();
    } else if (bytes_.size() > kMostBytes && cells_.size() % columns_ == 0) {
        end();
        bytes_ = {};  // what one large feature took
    }
}

void Rows::bind(Statement& statement, std::size_t firstCell, std::size_t count) const {
    for (std::size_t i = 0; i < count; ++i) {
        const Cell& cell = cells_[firstCell + i];
        const int place = static_cast<int>(i) + 1;
        if (const auto* integer = std::get_if<int64_t>(&cell)) {
            statement.bind(place, *integer);
        } else if (const auto* real = std::get_if<double>(&cell)) {
            statement.bind(place, *real);
        } else if (const auto* bytes = std::get_if<Bytes>(&cell)) {
            const auto found = std::span(bytes_).subspan(bytes->start, bytes->size);
            if (bytes->blob) {
                statement.bind(place, found);
            } else {
                statement.bind(place, std::string_view(reinterpret_cast<const char*>(found.data()),
                                                       found.size()));
            }
        } else {
            statement.bindNothing(place);
        }
    }
}

void Rows::end() {
    for (std::size_t first = 0; first < cells_.size(); first += columns_) {
        bind(one_, first, columns_);
        one_.run();
    }
    cells_.clear();
    bytes_.clear();
}

}  // namespace formats::geopackage
