#include "tables/state.h"

#include "tables/sections.h"

namespace intake {

TablesState tablesState;

void rearmTables() { tablesState = {}; }

}  // namespace intake
