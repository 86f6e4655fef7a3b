#include "host/qxfeat/table_rows.h"

#include <algorithm>

#include "companions/qxfeat/table.h"

void infpln_(const int32_t* table, const QxItemDescriptor* items, const int32_t* itemCount,
             const int32_t* places, int32_t* status) {
    qxfeat::Table* found = qxfeat::tables().find(*table);
    const auto count = static_cast<std::size_t>(std::max(*itemCount, 0));
    *status = found && found->planRecords({items, count}, places) ? 0 : -1;
}

void infrow_(const int32_t* table, const int32_t* number, const double* values, const char* text,
             int32_t* status, int32_t textLength) {
    qxfeat::Table* found = qxfeat::tables().find(*table);
    const std::string_view characters(text, static_cast<std::size_t>(std::max(textLength, 0)));
    *status = found ? found->putPlanned(*number, values, characters) : QX_ROW_NEEDS_CARE;
}
