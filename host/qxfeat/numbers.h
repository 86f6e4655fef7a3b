/* Numbers as their decimal digits say them. */
#ifndef HOST_QXFEAT_NUMBERS_H
#define HOST_QXFEAT_NUMBERS_H

#include "host/qx_api.h"

QX_BEGIN

/* The value rounded to that many significant decimal digits, at least 1; a value that is not finite
 * stays as it is. */
QX_API double d_sigdig(const double* value, const int32_t* digits);

QX_END

#endif
