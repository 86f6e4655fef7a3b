#include "stream/format.h"
#include "stream/report.h"
#include "tables/record_text.h"
#include "tables/table.h"

namespace intake {

namespace {

// What is looked at of the text from an item on; a longer character item is cut. Stays.
constexpr std::size_t kWorkLength = 255;
constexpr std::size_t kIntegerColumns = 16;

// The width of a field whose format is made from the item. A width that does not fit its place in
// the format, of so many digits, makes a format that reads nothing.
std::size_t formatWidth(const RecordText& text, std::size_t position, int32_t width,
                        int32_t highest) {
    if (width < 1 || width > highest) {
        text.fail(position, static_cast<std::size_t>(std::max(width, 1)));
    }
    return static_cast<std::size_t>(width);
}

// Reads the item at the position, and moves on.
double readItem(const RecordText& text, const QxItemDescriptor& item, std::size_t& position) {
    const std::size_t start = position;
    switch (item.type) {
        case QX_ITEM_DATE:
        case QX_ITEM_INTEGER_TEXT:
            position += kIntegerColumns + 1;
            return text.integer(start, kIntegerColumns);
        case QX_ITEM_CHARACTER:
            position += static_cast<std::size_t>(item.width);
            return 0;
        case QX_ITEM_INTEGER: {
            // The format has one digit for the width.
            const std::size_t width = formatWidth(text, start, item.outputWidth, 9);
            position += width;
            return text.integer(start, width);
        }
        case QX_ITEM_NUMBER_TEXT:
        case QX_ITEM_REAL: {
            const bool asText = item.type == QX_ITEM_NUMBER_TEXT;
            const std::size_t width =
                formatWidth(text, start, asText ? item.width : item.outputWidth, 99);
            position += width;
            return text.real(start, width, std::max(item.decimals, 0), 0);
        }
        default:
            return 0;
    }
}

}  // namespace

void readOlderRecords(Table& table) {
    Line line;
    IMPLIN(line);
    int32_t length = 0;
    read<"I4">(line, length);
    // Cut towards zero, so that a length of 0 still takes one line.
    const int64_t lines = (length - 1) / static_cast<int32_t>(Line::kLength) + 1;
    table.checkRecordCount(lines);
    std::vector<std::byte> record(table.recordBytes());
    const auto recordLength = static_cast<int32_t>(record.size());
    RecordText text;
    for (int32_t number = 1; number <= table.header.records; ++number) {
        text.readLines(lines);
        std::fill(record.begin(), record.end(), std::byte{0});
        std::size_t position = 1;
        for (int32_t place = 0; place < table.header.storedItems; ++place) {
            const QxItemDescriptor& item = table.ITMTAB[static_cast<std::size_t>(place)];
            const std::string_view work = text.field(position, kWorkLength);
            const double value = readItem(text, item, position);
            Status status = kSuccess;
            call(infenc_, item, value, work, recordLength, record, status);
            if (status != kSuccess) fatal("Illegal item type (IM1INF)");
        }
        putRecord(table, number, record);
    }
}

}  // namespace intake
