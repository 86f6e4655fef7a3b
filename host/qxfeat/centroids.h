/* Centroids of a coverage's polygons, with the labels that lie in each. */
#ifndef HOST_QXFEAT_CENTROIDS_H
#define HOST_QXFEAT_CENTROIDS_H

#include "host/qx_api.h"

QX_BEGIN

/* The fixed front of a centroid's record, in coverage units; labelCount record numbers of labels
 * follow it as 32-bit integers with no gap. */
#pragma pack(push, 4)
typedef struct QxCentroid {
    double x;
    double y;
    int32_t labelCount;
} QxCentroid;
#pragma pack(pop)

/* Opens the centroid file of a coverage for writing, creating it; what is written goes behind the
 * centroids that it holds. The two words in between are both 1. status 0, or not 0 and nothing is
 * open. */
QX_API void cntcre_(int32_t* handle, const char* coverage, const int32_t* one,
                    const int32_t* oneMore, int32_t* status, int32_t coverageLength);

/* Stores one centroid, a QxCentroid with its labels, in the coverage's precision. The scratch
 * integer is neither read nor set. */
QX_API void cntwt_(const int32_t* handle, const int32_t* scratch, const void* record);

QX_API void cntcls_(const int32_t* handle);

/* Reading. cntopn_ opens the centroid file, status not 0 if there is none; cntrec_ gives how many
 * centroids it holds; cntpos_ makes the centroid of a record number, from 1, the next one.
 * cntrd_ reads the next centroid: its record number, its QxCentroid, and its labels into room for
 *   capacity of them. status 0; -1 behind the last one; 1 if it has more labels than there is room
 *   for: then labelCount tells how many, no labels are given, and the next call gives the same
 *   centroid again. */
QX_API void cntopn_(int32_t* handle, const char* coverage, int32_t* status, int32_t coverageLength);
QX_API void cntrec_(const int32_t* handle, int32_t* count);
QX_API void cntpos_(const int32_t* handle, const int32_t* record, int32_t* status);
QX_API void cntrd_(const int32_t* handle, int32_t* number, QxCentroid* centroid, int32_t* labels,
                   const int32_t* capacity, int32_t* status);

QX_END

#endif
