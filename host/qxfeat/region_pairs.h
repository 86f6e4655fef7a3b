/* The table of integer pairs that a subclass of regions has. */
#ifndef HOST_QXFEAT_REGION_PAIRS_H
#define HOST_QXFEAT_REGION_PAIRS_H

#include "host/qx_api.h"

QX_BEGIN

/* Opens the pairs of a subclass for writing, creating them; what is written goes behind the pairs
 * that it holds. status 0, or not 0 and nothing is open. */
QX_API void rxpcre_(int32_t* handle, const char* coverage, const char* subclass, int32_t* status,
                    int32_t coverageLength, int32_t subclassLength);

/* Stores one pair with its record number. status 0, or not 0 if the handle is none. */
QX_API void rxpwt_(const int32_t* handle, const int32_t* pair, const int32_t* number,
                   int32_t* status);

QX_API void rxpcls_(const int32_t* handle);

/* Reading. rxpopn_ opens the pairs of a subclass, status not 0 if there are none; rxprec_ gives how
 * many pairs it holds; rxprd_ reads the next pair and the number it was stored with: status 0, or
 * -1 behind the last one. */
QX_API void rxpopn_(int32_t* handle, const char* coverage, const char* subclass, int32_t* status,
                    int32_t coverageLength, int32_t subclassLength);
QX_API void rxprec_(const int32_t* handle, int32_t* count);
QX_API void rxprd_(const int32_t* handle, int32_t* number, int32_t* pair, int32_t* status);

/* Whether a subclass of regions is without topology: 1 if it has no polygon file, 0 if it has. */
QX_API void rxpprl_(const char* coverage, const char* subclass, int32_t* flag,
                    int32_t coverageLength, int32_t subclassLength);

QX_END

#endif
