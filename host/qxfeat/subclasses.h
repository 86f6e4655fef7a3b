/* Subclasses: the named parts of a coverage's annotation and regions. */
#ifndef HOST_QXFEAT_SUBCLASSES_H
#define HOST_QXFEAT_SUBCLASSES_H

#include "host/qx_api.h"

QX_BEGIN

/* Walks the subclasses of a coverage that have a file of one of two file codes: 16 annotation,
 * 89 region pairs, 90 region polygons; a caller that wants one code gives it twice. Each subclass
 * comes once, in the order in which they were made. status not 0 if it is no coverage.
 * centry_ gives the next name, blank for the part without a name, and a count of 1; behind the
 * last one the count is 0. cclose_ ends the walk. */
QX_API void copen_(int32_t* walk, const char* coverage, const int32_t* firstCode,
                   const int32_t* secondCode, int32_t* status, int32_t coverageLength);
QX_API void centry_(const int32_t* walk, char* subclass, int32_t* count, int32_t subclassLength);
QX_API void cclose_(const int32_t* walk);

QX_END

#endif
