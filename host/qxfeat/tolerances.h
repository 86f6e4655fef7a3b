/* The tolerance table of a coverage: two integers and a value to a row. */
#ifndef HOST_QXFEAT_TOLERANCES_H
#define HOST_QXFEAT_TOLERANCES_H

#include "host/qx_api.h"

QX_BEGIN

/* Stores the table, in place of one that is there: count rows, one element of each array to a row.
 * status 0, or not 0 if it could not be written. */
QX_API void tolset_(const char* coverage, const int32_t* count, const int32_t* column1,
                    const int32_t* column2, const double* values, int32_t* status,
                    int32_t coverageLength);

/* Fetches the first count rows. status not 0 if there are fewer; those that there are, are given.
 */
QX_API void tolget_(const char* coverage, const int32_t* count, int32_t* column1, int32_t* column2,
                    double* values, int32_t* status, int32_t coverageLength);

/* How many rows the table has; status not 0 if there is no table. */
QX_API void tolrec_(const char* coverage, int32_t* count, int32_t* status, int32_t coverageLength);

QX_END

#endif
