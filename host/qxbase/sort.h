/* External sort of records of 32-bit words. */
#ifndef HOST_QXBASE_SORT_H
#define HOST_QXBASE_SORT_H

#include "host/qx_api.h"

QX_BEGIN

/* The callbacks of a sort. None of them may throw.
 * QxSortRead gives the next record: 0, or anything else behind the last one.
 * QxSortCompare is below, at or above 0 as the first record goes before, with or behind the second.
 * QxSortWrite takes the records in their order. */
typedef int32_t (*QxSortRead)(int32_t* record);
typedef int32_t (*QxSortCompare)(const int32_t* first, const int32_t* second);
typedef void (*QxSortWrite)(const int32_t* record);

/* What became of a sort: records that went through, and sorted runs that were spooled to scratch
 * files, 0 where one run was all; status 0, or not 0 if scratch space failed and records are
 * missing. */
typedef struct QxSortCounters {
    int64_t records;
    int64_t runs;
    int32_t status;
} QxSortCounters;

/* Sorts records of a number of words. It takes no memory of its own that grows with the records:
 * area is the caller's, with room for (words + 1) x capacity words, and two scratch files hold the
 * rest. Records that compare equal keep their order. capacity is the number of records in a run,
 * at least 128. */
QX_API void srtfilC(const int32_t* words, const int32_t* capacity, int32_t* area, QxSortRead read,
                    QxSortCompare compare, QxSortWrite write, QxSortCounters* counters);

QX_END

#endif
