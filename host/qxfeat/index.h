/* Reading a spatial index: from a rectangle to the records that may touch it. */
#ifndef HOST_QXFEAT_INDEX_H
#define HOST_QXFEAT_INDEX_H

#include "host/qx_api.h"

QX_BEGIN

/* Kinds of features that have an index. */
enum {
    QX_INDEX_POINTS = 1,
    QX_INDEX_ARCS = 2,
    QX_INDEX_POLYGONS = 3,
    QX_INDEX_ANNOTATION = 4, /* one for each subclass */
    QX_INDEX_REGIONS = 5     /* one for each subclass */
};

/* Opens the index of a kind; the subclass is blank for the kinds that have none. status 0, or not 0
 * if there is no index that can be read. spxcls_ closes it. */
QX_API void spxopn_(int32_t* index, const char* coverage, const char* subclass, const int32_t* kind,
                    int32_t* status, int32_t coverageLength, int32_t subclassLength);
QX_API void spxcls_(const int32_t* index);

/* How many records are in the index; the extent that it was built for, four reals that were rounded
 * to 32 bits; and how many nodes and blocks the file has. */
QX_API void spxhdr_(const int32_t* index, int32_t* recordCount, double* extent, int32_t* nodes,
                    int32_t* blocks);

/* A node, from 1: its first block, and how many entries it has; zeros for one that is empty. Its
 * entries lie in blocks that follow one another, 100 in each but the last. */
QX_API void spxnod_(const int32_t* index, const int32_t* node, int32_t* firstBlock,
                    int32_t* entryCount);

/* The entries of a block, whose numbers count from 2, as pairs: the packed box and the number of a
 * record, from 1. The box is one byte a side: xmin, the highest, ymin, xmax and ymax, in 256ths of
 * the extent. entries has room for 100 pairs. status not 0 if there is no such block. */
QX_API void spxblk_(const int32_t* index, const int32_t* block, int32_t* entries, int32_t* count,
                    int32_t* status);

/* Asks for a rectangle: count is how many records may touch it. Every record whose box meets the
 * rectangle is among them. spxnxt_ gives their numbers, the lowest first; status -1 behind the
 * last. status of spxask_ not 0 if a part of the index could not be read: then a caller has to look
 * at all records. */
QX_API void spxask_(const int32_t* index, const double* box, int32_t* count, int32_t* status);
QX_API void spxnxt_(const int32_t* index, int32_t* record, int32_t* status);

QX_END

#endif
