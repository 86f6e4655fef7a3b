// The section routines of lattices, grids and stacks.
#ifndef RASTER_SECTIONS_H
#define RASTER_SECTIONS_H

#include "stream/types.h"

namespace intake {

// Reads a lattice. status is kReported if there is one of that name or it cannot be made.
void IMPLAT(const Name& dataset, Status& status);

// Reads a grid. skip tells on entry that the grid may not be made, whatever its lines say, and on
// return that a grid of a stack was not made: its lines are read, and its side sections are to be
// left out. status is kSuccess then; otherwise not kSuccess where the grid could not be made or a
// row could not be written.
void IMPGRD(const Name& dataset, const bool& inStack, bool& skip, Status& status);

// Reads a section that opens or closes a stack. The names of its grids go to the scratch list, a
// text channel made with acreat_, which is then at its first line; closed tells that the section
// closed the stack. status is kReported if the stack cannot be made or the section is damaged.
void IMPSTK(const Name& dataset, const Handle& scratchList, bool& closed, Status& status);

// Closes the grid at hand, if any, and puts the process-wide state back to its start.
void rearmRaster();

}  // namespace intake

#endif
