/* Byte order. Files are big-endian; these turn words in place between the program's order and the
 * file's. stride is the distance between words in words (callers give 1 or 2 and mean the words
 * that follow one another); handle is the file that the words are for. */
#ifndef HOST_QXBASE_BYTE_ORDER_H
#define HOST_QXBASE_BYTE_ORDER_H

#include "host/qx_api.h"

QX_BEGIN

QX_API void swi4fn_(int32_t* words, const int32_t* count, const int32_t* stride,
                    const int32_t* handle);
QX_API void swr4fn_(float* words, const int32_t* count, const int32_t* stride,
                    const int32_t* handle);
QX_API void swd8fn_(double* words, const int32_t* count, const int32_t* stride,
                    const int32_t* handle);

/* To the file's order ("nb") and back ("bn"), without a file. */
QX_API void swi4nb_(int32_t* words, const int32_t* count);
QX_API void swi4bn_(int32_t* words, const int32_t* count);
QX_API void swr4nb_(float* words, const int32_t* count);
QX_API void swr4bn_(float* words, const int32_t* count);
QX_API void swd8nb_(double* words, const int32_t* count);
QX_API void swd8bn_(double* words, const int32_t* count);

QX_END

#endif
