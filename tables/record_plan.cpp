#include "tables/record_plan.h"

#include "host/qxfeat/table_rows.h"
#include "stream/fast_reals.h"
#include "stream/fields.h"
#include "stream/report.h"

namespace intake {

namespace {

constexpr std::size_t kSingleColumns = 14;
constexpr std::size_t kDoubleColumns = 24;
constexpr std::size_t kShortColumns = 6;
constexpr std::size_t kLongColumns = 11;

bool readWhole(std::string_view field, double& value) {
    int64_t whole = 0;
    if (!readInteger(field, whole)) return false;
    value = static_cast<double>(whole);
    return true;
}

// Fields side by side; one that takes more care alone.
template <std::size_t count>
bool readSingles(const char* fields, double* values) {
    if (fast::readReals<7, count>(fields, values)) return true;
    for (std::size_t index = 0; index < count; ++index) {
        const std::string_view field(fields + index * kSingleColumns, kSingleColumns);
        if (!readReal(field, 7, 1, values[index])) return false;
    }
    return true;
}

}  // namespace

RecordPlan::RecordPlan(Table& table, int64_t lines) {
    if (table.statisticsMode != 0 || table.header.records == 0) return;
    const auto count = static_cast<std::size_t>(table.header.storedItems);
    std::vector<int32_t> places;
    std::size_t place = 0;
    for (std::size_t index = 0; index < count; ++index) {
        QxItemDescriptor& item = table.ITMTAB[index];
        if (item.type == QX_ITEM_DATE || item.type == QX_ITEM_INTEGER_TEXT) {
            item.type = QX_ITEM_CHARACTER;
        }
        places.push_back(static_cast<int32_t>(place));
        const bool wide = item.width > 4;
        switch (item.type) {
            case QX_ITEM_CHARACTER:
                place += static_cast<std::size_t>(item.width);
                break;
            case QX_ITEM_INTEGER:
                steps_.push_back({item.width > 2 ? Fields::kLong : Fields::kShort, place, index});
                place += item.width > 2 ? kLongColumns : kShortColumns;
                break;
            case QX_ITEM_NUMBER_TEXT:
                steps_.push_back({Fields::kSingle, place, index});
                place += kSingleColumns;
                break;
            case QX_ITEM_REAL:
                steps_.push_back({wide ? Fields::kDouble : Fields::kSingle, place, index});
                place += wide ? kDoubleColumns : kSingleColumns;
                break;
            default:
                return;
        }
    }
    if (place > static_cast<std::size_t>(lines) * Line::kLength) return;
    joinSingles();
    values_.resize(count);
    Status status = kSuccess;
    call(infpln_, table.handle, table.ITMTAB.data(), static_cast<int32_t>(count), places, status);
    made_ = status == kSuccess;
}

// Those that lie side by side, as text and as values, are read four or two at a time.
void RecordPlan::joinSingles() {
    std::vector<Step> joined;
    for (std::size_t index = 0; index < steps_.size();) {
        std::size_t run = 1;
        const auto follows = [&](std::size_t other) {
            return index + other < steps_.size() &&
                   steps_[index + other].fields == Fields::kSingle &&
                   steps_[index + other].place == steps_[index].place + other * kSingleColumns &&
                   steps_[index + other].value == steps_[index].value + other;
        };
        if (steps_[index].fields == Fields::kSingle) {
            while (run < 4 && follows(run)) ++run;
        }
        Step step = steps_[index];
        if (run == 4) step.fields = Fields::kSingles4;
        if (run == 2 || run == 3) step.fields = Fields::kSingles2;
        joined.push_back(step);
        index += run == 3 ? 2 : run;
    }
    steps_ = std::move(joined);
}

bool RecordPlan::read(const Step& step, const RecordText& text) {
    const char* fields = text.data() + step.place;
    double* values = values_.data() + step.value;
    switch (step.fields) {
        case Fields::kSingles4:
            return readSingles<4>(fields, values);
        case Fields::kSingles2:
            return readSingles<2>(fields, values);
        case Fields::kSingle:
            return readReal({fields, kSingleColumns}, 7, 1, *values);
        case Fields::kDouble:
            return readReal({fields, kDoubleColumns}, 17, 1, *values);
        case Fields::kShort:
            return readWhole({fields, kShortColumns}, *values);
        default:
            return readWhole({fields, kLongColumns}, *values);
    }
}

bool RecordPlan::put(const Table& table, const RecordText& text, int32_t number) {
    if (!made_) return false;
    for (const Step& step : steps_) {
        if (!read(step, text)) return false;
    }
    Status status = kSuccess;
    call(infrow_, table.handle, number, values_, text.from(1), status);
    if (status == QX_ROW_NEEDS_CARE) return false;
    checkStored(table, status);
    return true;
}

}  // namespace intake
