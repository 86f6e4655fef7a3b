#include "datasets/tables.h"

#include <algorithm>
#include <charconv>

#include "host/qxbase/names.h"

namespace datasets {

using qx::call;

namespace {

using TableName = qx::FixedText<QX_TABLE_NAME_LENGTH>;

// The whole of a text as a number; false if it is none.
template <class T>
bool parse(std::string_view text, T& value) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

std::string_view trimmed(std::string_view text) {
    text = qx::trimText(text);
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

// Eight digits: year, month, day.
Date dateIn(std::string_view text) {
    Date date{0, 0, 0, text};
    const std::string_view digits = trimmed(text);
    const bool whole =
        digits.size() == 8 && digits.find_first_not_of("0123456789") == std::string_view::npos;
    int32_t number = 0;
    if (!whole || !parse(digits, number)) return date;
    const Date found{number / 10000, number / 100 % 100, number % 100, text};
    const bool sound = found.year > 0 && found.month >= 1 && found.month <= 12 && found.day >= 1 &&
                       found.day <= 31;
    return sound ? found : date;
}

template <class T>
Value numberOf(std::string_view bytes) {
    const std::string_view text = trimmed(bytes);
    T value = 0;
    if (text.empty()) return {};
    return parse(text, value) ? Value(value) : Value(bytes);
}

Column columnOf(int32_t table, int32_t place) {
    QxItem item{};
    TableName name;
    TableName alternateName;
    int32_t status = 0;
    call(infitm_, table, place, item, name, alternateName, status);
    const QxItemDescriptor& shape = item.descriptor;
    Column column{std::string(name.view()),
                  std::string(alternateName.view()),
                  static_cast<ColumnType>(shape.type),
                  shape.width,
                  shape.decimals,
                  shape.start,
                  shape.outputWidth,
                  item.number,
                  item.redefined != 0,
                  item.indexed != 0,
                  {}};
    std::copy_n(item.kept, column.kept.size(), column.kept.begin());
    return column;
}

}  // namespace

Value Row::operator[](std::size_t column) const {
    const Value value = stored(column);
    const auto* text = std::get_if<std::string_view>(&value);
    const auto* number = std::get_if<double>(&value);
    switch (columns_[column].type) {
        case ColumnType::date:
            return text ? dateIn(*text) : value;
        case ColumnType::integerText:
            return text ? numberOf<int64_t>(*text) : value;
        case ColumnType::numberText:
            // A number that is not 0 is one.
            return number && *number == 0 ? numberOf<double>(bytes(column)) : value;
        default:
            return value;
    }
}

Value Row::stored(std::size_t column) const {
    double value = 0;
    int32_t status = 1;
    const auto place = static_cast<int32_t>(column) + 1;
    const ColumnType type = columns_[column].type;
    if (type == ColumnType::numberText || type == ColumnType::integer || type == ColumnType::real) {
        char none = 0;
        infval_(&table_, &place, &value, &none, &status, 0);
        if (status != 0) return {};
        return type == ColumnType::integer ? Value(static_cast<int64_t>(value)) : Value(value);
    }
    const char* bytes = nullptr;
    int32_t count = 0;
    infbyt_(&table_, &place, &bytes, &count, &status);
    return status == 0 ? Value(std::string_view(bytes, static_cast<std::size_t>(count))) : Value();
}

std::string_view Row::bytes(std::size_t column) const {
    const auto place = static_cast<int32_t>(column) + 1;
    const char* bytes = nullptr;
    int32_t count = 0;
    int32_t status = 0;
    infbyt_(&table_, &place, &bytes, &count, &status);
    return {bytes, static_cast<std::size_t>(count)};
}

TablePlace tablePlace(std::string_view path) {
    qx::Name directory;
    qx::FixedText<8> prefix;
    TableName name;
    call(infpth_, path, directory, prefix, name);
    return {std::string(directory.view()), std::string(name.view())};
}

TableCursor::TableCursor(const TablePlace& place) {
    int32_t handle = 0;
    int32_t status = 0;
    call(infopn_, std::string_view(place.name), std::string_view(place.directory), "", 1, handle,
         count_, recordLength_, status);
    handle_.take(handle, status);
    int32_t items = 0;
    int32_t inDataset = 0;
    if (handle_) call(infitc_, handle_.number(), items, inDataset);
    external_ = inDataset != 0;
    for (int32_t item = 1; item <= items; ++item) columns_.push_back(columnOf(handle, item));
    row_.table_ = handle;
    row_.columns_ = columns_;
}

bool TableCursor::next() {
    int32_t status = 1;
    if (std::exchange(gone_, false)) return true;
    if (handle_) call(infrd_, handle_.number(), row_.number_, status);
    return status == 0;
}

bool TableCursor::go(int32_t record) {
    int32_t status = 1;
    if (handle_) call(infget_, handle_.number(), record, status);
    gone_ = status == 0;
    row_.number_ = record;
    return gone_;
}

int32_t TableCursor::find(std::string_view column) const {
    int32_t place = 0;
    if (handle_) call(inffnd_, handle_.number(), column, place);
    return place - 1;
}

std::string TableCursor::metadataPath() const {
    qx::Name path;
    if (handle_) call(infxml_nam_, handle_.number(), path);
    return std::string(path.view());
}

TableListCursor::TableListCursor(std::string_view directory, std::string_view owner)
    : place_{std::string(directory), {}} {
    int32_t list = 0;
    call(inflst_, list, directory, owner, count_);
    handle_.take(list, 0);
}

bool TableListCursor::next() {
    TableName name;
    int32_t status = 1;
    if (handle_) call(infnxt_, handle_.number(), name, status);
    place_.name = name.view();
    return status == 0;
}

TableList tablesOf(std::string_view dataset) {
    const TablePlace owner = tablePlace(dataset);
    return {owner.directory, owner.name};
}

TableList tablesIn(std::string_view workspace) {
    qx::Name path;
    call(ejoin_, workspace, "*", path);
    return {tablePlace(path.view()).directory, ""};
}

}  // namespace datasets
