// The section routines of a surface (TIN), and the layer of open surfaces that they write through.
#ifndef TIN_SECTIONS_H
#define TIN_SECTIONS_H

#include "stream/types.h"

namespace intake {

// Starts the layer: fetches the no-data values, and the first time clears its lists.
void TININI();
// Creates a surface with empty members and leaves it open. status kReported if one is there or it
// cannot be made.
void TINCRE(const Name& surface, Status& status);
// Opens a surface without files, which carries the counts of ENV to the sections behind it.
void TINSCR(Handle& handle, int32_t option, Status& status);
// Closes all surfaces.
void TINEND();

// Each takes the surface's name and a status: kSuccess when the section was read to its end,
// kReported when its file could not be made.
void IMPENV(const Name& surface, Status& status);
void IMPNXY(const Name& surface, Status& status);
void IMPNZ(const Name& surface, Status& status);
void IMPNOD(const Name& surface, Status& status);
void IMPEDG(const Name& surface, Status& status);
void IMPHUL(const Name& surface, Status& status);
void IMPNID(const Name& surface, Status& status);
// The mask over the triangles.
void IMTMSK(const Name& surface, Status& status);

// Puts the layer back to its start. Surfaces that an import left open are closed, with nothing of
// a dataset deleted.
void rearmTin();

}  // namespace intake

#endif
