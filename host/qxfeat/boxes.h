/* Rectangles: xmin, ymin, xmax, ymax in coverage units. */
#ifndef HOST_QXFEAT_BOXES_H
#define HOST_QXFEAT_BOXES_H

#include "host/qx_api.h"

QX_BEGIN

/* The box of count points, given as pairs x, y; zeros for no points. Coordinates that are no
 * numbers are passed over. */
QX_API void boxfd2_(const double* points, const int32_t* count, double* box);

/* The extent of a coverage as its .BND table has it. status not 0 if there is no such table, or
 * none with the items XMIN, YMIN, XMAX and YMAX and a record. */
QX_API void bndget_(const char* coverage, double* box, int32_t* status, int32_t coverageLength);

QX_END

#endif
