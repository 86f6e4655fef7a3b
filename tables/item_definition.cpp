#include "tables/item_definition.h"

#include "stream/format.h"

namespace intake {

void IMPITM(const Line& line, ItemDefinition& ITMDEF) {
    // Two numbers have a single column; one that did not fit was written as a star.
    FixedText<144> work(line);
    if (work[25] == '*') work[25] = '4';
    if (work[36] == '*') work[36] = '0';
    FixedText<1> mark;
    read<"A16,I3,I2,I4,I1,2X,I4,I2,I2,I1,I2,I4,I4,2X,A16,I4,A1">(
        work, ITMDEF.name, ITMDEF.width, ITMDEF.columns20to21, ITMDEF.start, ITMDEF.column26,
        ITMDEF.outputWidth, ITMDEF.decimals, ITMDEF.type, ITMDEF.column37, ITMDEF.columns38to39,
        ITMDEF.columns40to43, ITMDEF.columns44to47, ITMDEF.alternateName, ITMDEF.number, mark);
    ITMDEF.indexed = mark[0] == 'I';
}

}  // namespace intake
