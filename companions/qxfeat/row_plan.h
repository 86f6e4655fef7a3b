// How the items of a table's records are packed, one after the other in one walk.
#ifndef COMPANIONS_QXFEAT_ROW_PLAN_H
#define COMPANIONS_QXFEAT_ROW_PLAN_H

#include <span>
#include <string_view>
#include <vector>

#include "host/qxfeat/tables.h"

namespace qxfeat {

class RowPlan {
  public:
    // No plan is made where there is no item, or one of no known kind or beyond the record.
    bool make(std::span<const QxItemDescriptor> items, const int32_t* places, int32_t recordLength);
    // The record of some values and a text; empty if one of them does not fit, or without a plan.
    std::span<const std::byte> pack(const double* values, std::string_view text);

  private:
    enum class Kind : uint8_t { kText, kInteger2, kInteger4, kReal4, kReal8, kOther };
    struct Step {
        Kind kind;
        int32_t place;  // in the text
        QxItemDescriptor item;
    };
    static Kind kindOf(const QxItemDescriptor& item);
    bool packStep(const Step& step, double value, std::string_view text);

    std::vector<Step> steps_;
    // A step that succeeds fills all its bytes, so that the bytes between them stay zero.
    std::vector<std::byte> record_;
};

}  // namespace qxfeat

#endif
