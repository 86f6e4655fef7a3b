// Builds the system that a text means out of PROJ's parts.
#ifndef CRS_PROJ_BUILD_H
#define CRS_PROJ_BUILD_H

#include "crs/meaning.h"
#include "crs/proj_objects.h"

namespace crs {

// Null if PROJ or its registry cannot.
Object buildSystem(PJ_CONTEXT* context, const Meaning& meaning);

}  // namespace crs

#endif
