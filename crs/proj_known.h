// Finds a system in the registry.
#ifndef CRS_PROJ_KNOWN_H
#define CRS_PROJ_KNOWN_H

#include "crs/proj_objects.h"

namespace crs {

// The system of the registry that this one is the same as, by whatever name, and its code. Null,
// with a code of 0, if there is none.
Object knownSystem(PJ_CONTEXT* context, const Object& system, int32_t& code);

}  // namespace crs

#endif
