// The parts of a system, out of PROJ's objects.
#ifndef CRS_PROJ_PARTS_H
#define CRS_PROJ_PARTS_H

#include "crs/proj_objects.h"
#include "crs/reference_system.h"

namespace crs {

// Of a geographic or projected system.
Parts partsOf(PJ_CONTEXT* context, const PJ* system);

}  // namespace crs

#endif
