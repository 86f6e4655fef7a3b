// The line that defines an item.
#ifndef TABLES_ITEM_DEFINITION_H
#define TABLES_ITEM_DEFINITION_H

#include "stream/types.h"

namespace intake {

struct ItemDefinition {
    FixedText<16> name;
    int16_t width = 0;  // bytes in the record
    int16_t columns20to21 = 0;
    int16_t start = 0;  // in the record, from 1
    int16_t column26 = 0;
    int16_t outputWidth = 0;
    int16_t decimals = 0;
    int16_t type = 0;
    int16_t column37 = 0;
    int16_t columns38to39 = 0;
    int16_t columns40to43 = 0;
    int16_t columns44to47 = 0;
    FixedText<16> alternateName;
    int16_t number = 0;  // from 1
    bool indexed = false;

    bool redefined() const { return number == -1; }
};

// Decodes the line of an item.
void IMPITM(const Line& line, ItemDefinition& ITMDEF);

}  // namespace intake

#endif
