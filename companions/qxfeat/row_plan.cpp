#include "companions/qxfeat/row_plan.h"

#include <cmath>
#include <cstring>

#include "companions/qxfeat/item_values.h"
#include "companions/store/words.h"

namespace qxfeat {

RowPlan::Kind RowPlan::kindOf(const QxItemDescriptor& item) {
    const bool real = item.type == QX_ITEM_REAL;
    if (item.type == QX_ITEM_CHARACTER) return Kind::kText;
    if (real && item.width == 4) return Kind::kReal4;
    if (real && item.width == 8) return Kind::kReal8;
    if (item.type == QX_ITEM_INTEGER && item.width == 2) return Kind::kInteger2;
    if (item.type == QX_ITEM_INTEGER && item.width == 4) return Kind::kInteger4;
    return Kind::kOther;
}

bool RowPlan::make(std::span<const QxItemDescriptor> items, const int32_t* places,
                   int32_t recordLength) {
    steps_.clear();
    record_.clear();
    for (std::size_t index = 0; index < items.size(); ++index) {
        const QxItemDescriptor& item = items[index];
        const bool known = item.type >= QX_ITEM_DATE && item.type <= QX_ITEM_REAL;
        const bool within = item.start >= 1 && item.width >= 0 &&
                            int64_t{item.start} - 1 + item.width <= recordLength;
        if (!known || !within || (item.type == QX_ITEM_CHARACTER && places[index] < 0)) {
            steps_.clear();
            return false;
        }
        steps_.push_back({kindOf(item), places[index], item});
    }
    if (!items.empty()) record_.assign(static_cast<std::size_t>(recordLength), std::byte{0});
    return !record_.empty();
}

bool RowPlan::packStep(const Step& step, double value, std::string_view text) {
    std::byte* bytes = record_.data() + step.item.start - 1;
    switch (step.kind) {
        case Kind::kText: {
            const auto place = static_cast<std::size_t>(step.place);
            const auto width = static_cast<std::size_t>(step.item.width);
            if (place > text.size() || width > text.size() - place) return false;
            if (width != 0) std::memcpy(bytes, text.data() + place, width);
            return true;
        }
        case Kind::kInteger2:
            if (!(value >= -32768.0 && value < 32768.0)) return false;
            store::put(bytes, static_cast<int16_t>(value));
            return true;
        case Kind::kInteger4:
            if (!(value >= -2147483648.0 && value < 2147483648.0)) return false;
            store::put(bytes, static_cast<int32_t>(value));
            return true;
        case Kind::kReal4: {
            const auto narrow = static_cast<float>(value);
            if (std::isinf(narrow) && !std::isinf(value)) return false;
            store::put(bytes, narrow);
            return true;
        }
        case Kind::kReal8:
            store::put(bytes, value);
            return true;
        default:
            return packItem(step.item, value, {},
                            {bytes, static_cast<std::size_t>(step.item.width)});
    }
}

std::span<const std::byte> RowPlan::pack(const double* values, std::string_view text) {
    for (const Step& step : steps_) {
        if (!packStep(step, *values++, text)) return {};
    }
    return record_;
}

}  // namespace qxfeat
