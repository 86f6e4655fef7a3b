// The grids of a stack: which dataset the sections at hand belong to.
#ifndef ENTRY_STACK_GRIDS_H
#define ENTRY_STACK_GRIDS_H

#include "entry/import_state.h"

namespace intake {

// Makes the scratch list of grid names, unless there is one.
void openScratchList(ImportState& import);
// Closes and deletes it; status is that of the deletion.
void dropScratchList(ImportState& import, Status& status);

// Points the dataset name at the next grid of the list. A name that is not plain sets IMPSKP, for a
// grid that may not be made; a list that is used up ends the import.
void goToNextGrid(ImportState& import);

// Points the dataset name at nothing, for the sections behind a grid that was skipped.
void turnFromSkippedGrid(ImportState& import);

}  // namespace intake

#endif
