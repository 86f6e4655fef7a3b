/* Scratch files: records of words that are written, rewound and read once. They have no name that
 * anyone could find, and are gone when they are given back or the process ends. */
#ifndef HOST_QXBASE_SCRATCH_H
#define HOST_QXBASE_SCRATCH_H

#include "host/qx_api.h"

QX_BEGIN

/* Gets a scratch file; 0 if none can be made. scrgivC gives it back. */
QX_API void scrgetC(int32_t* file);
QX_API void scrgivC(const int32_t* file);

/* Writes a record of 32-bit words, in the program's order, behind the others. */
QX_API void BwriteC(const int32_t* file, const int32_t* words, const int32_t* data);
/* Goes to the first record, to read. What is written after that goes behind the last record. */
QX_API void BrewndC(const int32_t* file);
/* Reads the next record of so many words. status 0; -1 behind the last, or for a failed read. */
QX_API void BreadC(const int32_t* file, const int32_t* words, int32_t* data, int32_t* status);

QX_END

#endif
