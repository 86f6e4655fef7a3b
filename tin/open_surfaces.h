// The surfaces that are open: a table of handles, of which one is current.
#ifndef TIN_OPEN_SURFACES_H
#define TIN_OPEN_SURFACES_H

#include <cstdint>

#include "tin/surface.h"

namespace intake {

// Enters a surface, which becomes the current one; the lowest free handle from 1 on.
int32_t enterTin(Tin* tin);

// Null if none is open.
Tin* currentTin();

// Closes a surface; the first that is still open becomes current. Handle 0 closes all and frees the
// table. A handle that is none ends the import.
void EndTin(int32_t handle);

}  // namespace intake

#endif
