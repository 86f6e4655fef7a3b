/* Bitmaps: bits numbered from 1 that grow as they are set. */
#ifndef HOST_QXBASE_BITMAPS_H
#define HOST_QXBASE_BITMAPS_H

#include "host/qx_api.h"

QX_BEGIN

QX_API void bitcre_(int32_t* bitmap);
/* Clears all bits. */
QX_API void bitclr_(const int32_t* bitmap);
/* Sets the bit of an index to 0 or 1. */
QX_API void bitset_(const int32_t* index, const int32_t* value, const int32_t* bitmap);
/* Writes the bitmap to a file made with vcreat_, from the given record on, 32 bits to a word: bit 1
 * is the highest bit of the first word. An empty bitmap is one word of 0. status 0 or failure. */
QX_API void bitwtr_(const int32_t* handle, const int32_t* firstRecord, const int32_t* bitmap,
                    int32_t* status);
QX_API void bitcls_(const int32_t* bitmap);

QX_END

#endif
