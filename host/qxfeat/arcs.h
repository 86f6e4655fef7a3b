/* Arcs of a coverage. */
#ifndef HOST_QXFEAT_ARCS_H
#define HOST_QXFEAT_ARCS_H

#include "host/qx_api.h"

QX_BEGIN

/* The fixed front of an arc's record; vertexCount pairs x, y of 64-bit reals in coverage units
 * follow it with no gap. */
typedef struct QxArc {
    int32_t userId;
    int32_t fromNode;
    int32_t toNode;
    int32_t leftPolygon;
    int32_t rightPolygon;
    int32_t vertexCount;
} QxArc;

/* Opens the arc file of a coverage for writing, creating it; what is written goes behind the arcs
 * that it holds. The two words in between are both 1. status 0, or not 0 and nothing is open. */
QX_API void arccre_(int32_t* handle, const char* coverage, const int32_t* one,
                    const int32_t* oneMore, int32_t* status, int32_t coverageLength);

/* Stores one arc: its number, and a QxArc with its vertices. The vertices are kept in the
 * coverage's precision. */
QX_API void arcwt_(const int32_t* handle, const int32_t* number, const void* record);

QX_API void arccls_(const int32_t* handle);

/* Reading. arcopn_ opens the arc file, status not 0 if there is none; arcrec_ gives how many arcs
 * it holds; arcpos_ makes the arc of a record number, from 1, the next one.
 * arcrd_ reads the next arc: its number, its QxArc, and its vertices into room for capacity pairs.
 *   status 0; -1 behind the last arc; 1 if it has more vertices than there is room for: then arc
 *   tells how many, no vertices are given, and the next call gives the same arc again. A capacity
 *   below zero asks for the arc without its vertices, and where it lies is remembered for arcpos_,
 *   in eight bytes.
 * arcbox_ reads the next arc for its box alone, as boxfd2_ has it: status 0, or -1 behind the last
 *   arc. */
QX_API void arcopn_(int32_t* handle, const char* coverage, int32_t* status, int32_t coverageLength);
QX_API void arcrec_(const int32_t* handle, int32_t* count);
QX_API void arcpos_(const int32_t* handle, const int32_t* record, int32_t* status);
QX_API void arcrd_(const int32_t* handle, int32_t* number, QxArc* arc, double* vertices,
                   const int32_t* capacity, int32_t* status);
QX_API void arcbox_(const int32_t* handle, double* box, int32_t* status);

QX_END

#endif
