// One item's bytes: packed from a value or a text, and read back.
#ifndef COMPANIONS_QXFEAT_ITEM_VALUES_H
#define COMPANIONS_QXFEAT_ITEM_VALUES_H

#include <span>
#include <string_view>

#include "host/qxfeat/tables.h"

namespace qxfeat {

// Fills the item's bytes. False, with bytes that are blank for a text and zero otherwise, if the
// item is of no known kind or the value does not fit.
bool packItem(const QxItemDescriptor& item, double value, std::string_view text,
              std::span<std::byte> bytes);

// The number in an item's bytes: 0 for a text that is none, and for an unknown kind.
double unpackNumber(const QxItemDescriptor& item, std::span<const std::byte> bytes);

}  // namespace qxfeat

#endif
