/* Terminated strings and padded buffers. */
#ifndef HOST_QXBASE_STRINGS_H
#define HOST_QXBASE_STRINGS_H

#include "host/qx_api.h"

QX_BEGIN

/* Padded text to terminated string, trailing blanks removed; target holds sourceLength + 1. */
QX_API void f772cee(char* target, const char* source, int32_t sourceLength);

/* Terminated string to padded text, cut or padded to targetLength. */
QX_API void cee2f77(char* target, const char* source, int32_t targetLength);

/* As f772cee, in the argument order of the raster routines. */
QX_API void f772c(char* target, const char* source, int32_t sourceLength);

/* Copies the first length characters of a text to a record's field of capacity characters and
 * blanks the rest of the field. No more than the smaller of the capacities is copied. */
QX_API void chrstr_(const char* source, const int32_t* length, char* destination,
                    const int32_t* capacity, int32_t sourceCapacity);

/* Widens a 16-bit integer. */
QX_API int32_t intl_(const int16_t* value);

QX_END

#endif
