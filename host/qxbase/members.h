/* Member files: raw records of one length, nothing before or between them, in file byte order. A
 * surface is a directory of them (docs/workspace-format.md). There are two ways in: a transfer
 * writes a member from its start in one go, a member channel reads and writes records by number. */
#ifndef HOST_QXBASE_MEMBERS_H
#define HOST_QXBASE_MEMBERS_H

#include "host/qx_api.h"

QX_BEGIN

/* Transfers. */

/* exists is 1 if something of that name is there, otherwise 0. */
QX_API void mexist_(const char* name, int32_t* exists, int32_t nameLength);
/* Creates a member for writing; an existing one is emptied. status 0, or not 0 and no channel is
 * open. */
QX_API void mcreat_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength);
/* Writes behind what was written before, through a buffer. count is in units of 2 bytes. The member
 * of a surface's environment takes one record of 96 bytes, and what comes after it is dropped. */
QX_API void mxfer_(const int32_t* channel, const int32_t* count, const void* bytes);
/* Closes a transfer. A number that is no open one is left alone. */
QX_API void mclose_(const int32_t* channel);

/* Member channels. Paths are terminated, numbers go by value. */

enum QxMemberMode {
    QX_MEMBER_NEW = 1,    /* created, or emptied */
    QX_MEMBER_READ = 2,   /* must exist; is only read */
    QX_MEMBER_UPDATE = 3, /* must exist; is read and written */
    QX_MEMBER_EITHER = 4  /* created if it is missing; is read and written */
};

/* Opens a member whose records have recordBytes bytes, above 0. Gives the channel, from 1, or 0 if
 * it does not open. A member that was written as a record file with a header (the mask) has its
 * records behind that header. */
QX_API int32_t MEM_OpenChannel(const char* path, int32_t mode, int32_t recordBytes);
/* Whole records in the member; a part of one at the end does not count. */
QX_API int64_t MEM_Count(int32_t channel);
/* Reads at most count records from record number first, from 1, into records. Gives how many were
 * read: fewer than count at the end of the member, 0 also for a failure. */
QX_API int32_t MEM_Get(int32_t channel, int64_t first, int32_t count, void* records);
/* Writes count records from record number first. Gives 0, or -1 for a failed write or a member
 * that is only read. */
QX_API int32_t MEM_Put(int32_t channel, int64_t first, int32_t count, const void* records);
QX_API void MEM_CloseChannel(int32_t channel);

QX_END

#endif
