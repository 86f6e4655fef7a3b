/* Record files. The records lie in the file in its byte order, big-endian: a caller turns its words
 * with swi4fn_ and its kin before it writes. Record numbers count from 1. */
#ifndef HOST_QXBASE_RECORDS_H
#define HOST_QXBASE_RECORDS_H

#include "host/qx_api.h"

QX_BEGIN

/* Plain record files: the records alone, all of one length, nothing before or between them. */

/* status 0 if something of that name exists. */
QX_API void iexist_(const char* name, int32_t* status, int32_t nameLength);
/* Creates the file, which must not exist. recordBytes: bytes in a record, above 0. */
QX_API void icreat_(int32_t* handle, const char* name, const int32_t* recordBytes, int32_t* status,
                    int32_t nameLength);
/* Opens an existing file. mode 1 to read, 2 to read and write. What is no file of whole records of
 * this length, or has the header of another kind of file, is not opened to be written. */
QX_API void iopen_(int32_t* handle, const char* name, const int32_t* recordBytes,
                   const int32_t* mode, int32_t* status, int32_t nameLength);
/* Writes or reads the record of a number; reading beyond the last record fails. */
QX_API void iwrite_(const int32_t* handle, const void* record, const int32_t* recordBytes,
                    const int32_t* number, int32_t* status);
QX_API void iread_(const int32_t* handle, void* record, const int32_t* recordBytes,
                   const int32_t* number, int32_t* status);
/* Whole records in the file; a part of one at the end does not count. */
QX_API void icount_(const int32_t* handle, int32_t* count);
/* Bytes in the file. */
QX_API void isize_(const int32_t* handle, int64_t* bytes);
/* Closes the file. A number that is no open file is left alone. */
QX_API void iclose_(const int32_t* handle);

/* Record files with a header: fixed or variable records that a dataset holds. */

/* Creates the file anew.
 * code         file code, kept in the header
 * a, b, c      three integers that are kept in the header
 * recordWords  32-bit words in a record; 0 for records of any length */
QX_API void vcreat_(int32_t* handle, const char* path, const int32_t* code, const int32_t* a,
                    const int32_t* b, const int32_t* c, const int32_t* recordWords, int32_t* status,
                    int32_t pathLength);
/* Opens a file for reading; gives its code, its words in a record and the number of its records. */
QX_API void vopen_(int32_t* handle, const char* path, int32_t* code, int32_t* recordWords,
                   int32_t* recordCount, int32_t* status, int32_t pathLength);
/* Writes a record of count words. Records are written in order: number is that of the next one, or
 * in a file of fixed records any number up to it. Failures are told by vstat_. */
QX_API void vwrite_(const int32_t* handle, const int32_t* number, const void* words,
                    const int32_t* count);
/* Reads the record of a number into a buffer of capacity words; count is the record's length. A
 * record that is longer than the buffer gives its length, status 1 and no words. */
QX_API void vread_(const int32_t* handle, const int32_t* number, void* words,
                   const int32_t* capacity, int32_t* count, int32_t* status);
/* The host's own header words, at most 9, in file byte order. */
QX_API void vhead_(const int32_t* handle, const void* words, const int32_t* count);
QX_API void vgethd_(const int32_t* handle, void* words, const int32_t* capacity, int32_t* count);
/* 0 as long as every write to the file went well. */
QX_API void vstat_(const int32_t* handle, int32_t* status);
QX_API void vclose_(const int32_t* handle);

/* The forms that take a path as a terminated string. A record file is made anew where one stands.
 */
QX_API void VcreatC(int32_t* handle, const char* path, const int32_t* code, const int32_t* a,
                    const int32_t* b, const int32_t* c, const int32_t* recordWords,
                    int32_t* status);
QX_API void VwriteC(const int32_t* handle, const int32_t* number, const void* words,
                    const int32_t* count);
QX_API void VheadwC(const int32_t* handle, const void* words, const int32_t* count);
QX_API void VcloseC(const int32_t* handle);

QX_END

#endif
