#include "app/intake/export/table_columns.h"

#include "app/intake/utf8.h"

namespace program {

namespace {

using datasets::ColumnType;

formats::ColumnType typeOf(ColumnType type) {
    switch (type) {
        case ColumnType::date:
            return formats::ColumnType::kDate;
        case ColumnType::integerText:
        case ColumnType::integer:
            return formats::ColumnType::kInteger;
        case ColumnType::numberText:
        case ColumnType::real:
            return formats::ColumnType::kReal;
        case ColumnType::characters:
            break;
    }
    return formats::ColumnType::kText;
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(' ') == std::string_view::npos;
}

// Whether a value fits its column's type; texts always do.
bool agrees(const datasets::Value& value, formats::ColumnType type) {
    if (const auto* date = std::get_if<datasets::Date>(&value)) {
        return date->year != 0 || isBlank(date->text);
    }
    return type == formats::ColumnType::kText || !std::holds_alternative<std::string_view>(value);
}

}  // namespace

TableColumns::TableColumns(const datasets::TablePlace& place, bool redefined) : table_(place) {
    for (std::size_t at = 0; at < table_.columns().size(); ++at) {
        const datasets::Column& column = table_.columns()[at];
        if (column.redefined && !redefined) continue;
        const formats::ColumnType type = typeOf(column.type);
        const bool binary = column.type == ColumnType::real || column.type == ColumnType::integer;
        const bool sized = binary || type == formats::ColumnType::kText;
        plans_.push_back({at, {toUtf8(column.name), type, sized ? column.width : 0}});
    }
    rooms_.resize(plans_.size());
    look();
}

void TableColumns::look() {
    std::vector<Plan*> texts;
    for (Plan& plan : plans_) {
        const ColumnType type = table_.columns()[plan.place].type;
        if (type != ColumnType::integer && type != ColumnType::real) texts.push_back(&plan);
    }
    if (texts.empty()) return;
    for (const datasets::Row& row : table_) {
        for (Plan* plan : texts) {
            if (!agrees(row[plan->place], plan->column.type)) {
                plan->column.type = formats::ColumnType::kText;
                plan->column.width = table_.columns()[plan->place].width;
            }
            plan->isUtf8 = plan->isUtf8 && isUtf8(row.bytes(plan->place));
        }
    }
    table_.go(1);
}

void TableColumns::define(std::vector<formats::Column>& columns) const {
    for (const Plan& plan : plans_) columns.push_back(plan.column);
}

void TableColumns::append(const datasets::Row& row, Decoder& decoder,
                          std::vector<formats::Value>& values) {
    for (std::size_t at = 0; at < plans_.size(); ++at) {
        const Plan& plan = plans_[at];
        if (plan.column.type == formats::ColumnType::kText) {
            values.emplace_back(decoder.decode(row.bytes(plan.place), plan.isUtf8, rooms_[at]));
            continue;
        }
        const datasets::Value value = row[plan.place];
        if (const auto* integer = std::get_if<int64_t>(&value)) {
            values.emplace_back(*integer);
        } else if (const auto* real = std::get_if<double>(&value)) {
            values.emplace_back(*real);
        } else if (const auto* date = std::get_if<datasets::Date>(&value);
                   date && date->year != 0) {
            values.emplace_back(formats::Date{date->year, date->month, date->day});
        } else {
            values.emplace_back();
        }
    }
}

void TableColumns::append(int32_t record, Decoder& decoder, std::vector<formats::Value>& values) {
    if (plans_.empty()) return;
    if (const datasets::Row* row = table_.at(record)) {
        append(*row, decoder, values);
    } else {
        values.resize(values.size() + plans_.size());
    }
}

}  // namespace program
