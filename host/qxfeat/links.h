/* Links of a coverage: pairs of points. */
#ifndef HOST_QXFEAT_LINKS_H
#define HOST_QXFEAT_LINKS_H

#include "host/qx_api.h"

QX_BEGIN

/* Opens the link file of a coverage for writing, creating it; what is written goes behind the links
 * that it holds. The two words in between are both 1. status 0, or not 0 and nothing is open. */
QX_API void lnkcre_(int32_t* handle, const char* coverage, const int32_t* one,
                    const int32_t* oneMore, int32_t* status, int32_t coverageLength);

/* Stores one link: x, y of its first and of its second point in coverage units, kept in the
 * coverage's precision. number is the caller's count; the link gets the number behind the last of
 * the file. */
QX_API void lnkwt_(const int32_t* handle, const int32_t* number, const double* link);

QX_API void lnkcls_(const int32_t* handle);

/* Reading. lnkopn_ opens the link file, status not 0 if there is none; lnkrec_ gives how many links
 * it holds; lnkrd_ reads the next link, four reals, and its record number: status 0, or -1 behind
 * the last one. */
QX_API void lnkopn_(int32_t* handle, const char* coverage, int32_t* status, int32_t coverageLength);
QX_API void lnkrec_(const int32_t* handle, int32_t* count);
QX_API void lnkrd_(const int32_t* handle, int32_t* number, double* link, int32_t* status);

QX_END

#endif
