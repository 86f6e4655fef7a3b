/* The values that stand for no data. */
#ifndef HOST_QXGRIDIO_NODATA_H
#define HOST_QXGRIDIO_NODATA_H

#include "host/qx_api.h"

QX_BEGIN

/* A floating cell without data: the lowest finite number of single precision. */
QX_API extern const float MISSINGFLOAT;

/* An integer cell without data: 0x80000001. */
#define QX_MISSING_INTEGER (-2147483647)

/* The no-data value of floating cells (MISSINGFLOAT), and the one that lattices take by default,
 * which is the same. */
QX_API void fltndt_(float* noData);
QX_API void latndf_(float* noData);

QX_END

#endif
