#include "stream/report.h"
#include "tables/record_plan.h"
#include "tables/record_text.h"
#include "tables/table.h"

namespace intake {

namespace {

// The place of the walk through a record's text, and what was read there last.
struct Walk {
    std::size_t position = 1;
    std::size_t advance = 0;
    double value = 0;
};

void readItem(const RecordText& text, const QxItemDescriptor& item, Walk& walk) {
    switch (item.type) {
        case QX_ITEM_CHARACTER:
            walk.advance = static_cast<std::size_t>(item.width);
            break;
        case QX_ITEM_NUMBER_TEXT:
            walk.advance = 14;
            walk.value = text.real(walk.position, walk.advance, 7, 1);
            break;
        case QX_ITEM_INTEGER:
            walk.advance = item.width > 2 ? 11 : 6;
            walk.value = text.integer(walk.position, walk.advance);
            break;
        case QX_ITEM_REAL:
            walk.advance = item.width > 4 ? 24 : 14;
            walk.value = text.real(walk.position, walk.advance, item.width > 4 ? 17 : 7, 1);
            break;
        default:
            // Advance and value stay those of the item before. Stays.
            break;
    }
}

void tellUnableToEncode(const Table& table, int32_t item, int32_t record) {
    FixedText<16> itemOrdinal;
    FixedText<16> recordOrdinal;
    ORDNAM(item, itemOrdinal);
    ORDNAM(record, recordOrdinal);
    inform("/&Unable to encode the %1% item in the %2% record for the INFO file %3%.", itemOrdinal,
           recordOrdinal, table.TBLNAM);
    inform("This is probably caused by an invalid item definition, or a item not");
    inform("wide enough for the item value.");
}

}  // namespace

void readRecord(Table& table, const RecordText& text, int32_t number,
                std::vector<std::byte>& record) {
    const auto recordLength = static_cast<int32_t>(record.size());
    std::fill(record.begin(), record.end(), std::byte{0});
    Walk walk;
    for (int32_t place = 1; place <= table.header.storedItems; ++place) {
        QxItemDescriptor& item = table.ITMTAB[static_cast<std::size_t>(place) - 1];
        // Dates and integers that are text are text to the encoder, from here on.
        if (item.type == QX_ITEM_DATE || item.type == QX_ITEM_INTEGER_TEXT) {
            item.type = QX_ITEM_CHARACTER;
        }
        readItem(text, item, walk);
        if (table.statisticsMode != 0) {
            const StatisticsShape shape = statisticsShape(table.statisticsMode);
            item.start = (place - 1) * shape.width + 1;
            item.width = shape.width;
            item.outputWidth = shape.outputWidth;
            if (table.statisticsMode == 1) walk.value = static_cast<float>(walk.value);
        }
        Status status = kSuccess;
        call(infenc_, item, walk.value, text.from(walk.position), recordLength, record, status);
        if (status != kSuccess) tellUnableToEncode(table, place, number);
        walk.position += walk.advance;
        if (table.statisticsMode != 0) {
            // One pair for the whole table: from the second record on every item is read at
            // the width of the last one. Stays.
            item.width = table.keptWidth;
            item.outputWidth = table.keptOutputWidth;
        }
    }
    putRecord(table, number, record);
}

void readRecords(Table& table) {
    const int64_t lines = (table.textLength + Line::kLength - 1) / int64_t{Line::kLength};
    table.checkRecordCount(lines);
    std::vector<std::byte> record(table.recordBytes());
    RecordPlan plan(table, lines);
    RecordText text;
    for (int32_t number = 1; number <= table.header.records; ++number) {
        text.readLines(lines);
        if (!plan.put(table, text, number)) readRecord(table, text, number, record);
    }
}

}  // namespace intake
