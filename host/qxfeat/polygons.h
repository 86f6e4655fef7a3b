/* Polygons of a coverage and of its regions: a box each, and the arcs around it. */
#ifndef HOST_QXFEAT_POLYGONS_H
#define HOST_QXFEAT_POLYGONS_H

#include "host/qx_api.h"

QX_BEGIN

/* The fixed front of a polygon's record; arcCount triplets of 32-bit integers follow it with no
 * gap. The three integers of a triplet pass through as they stand. */
#pragma pack(push, 4)
typedef struct QxPolygon {
    double box[4]; /* xmin, ymin, xmax, ymax in coverage units */
    int32_t arcCount;
} QxPolygon;
#pragma pack(pop)

/* Kinds of polygon file: with arcs; boxes alone; and for reading a file that is named by its path,
 * such as the one of a region's subclass. */
enum { QX_POLYGON_ARCS = 1, QX_POLYGON_BOXES = 2, QX_POLYGON_PATH = 3 };

/* Opens a polygon file of a coverage for writing, creating it; what is written goes behind the
 * polygons that it holds. one is 1; kind is QX_POLYGON_ARCS or QX_POLYGON_BOXES. palcre3_ does it
 * for the regions of a subclass. status 0, or not 0 and nothing is open. */
QX_API void palcre_(int32_t* handle, const char* coverage, const int32_t* one, const int32_t* kind,
                    int32_t* status, int32_t coverageLength);
QX_API void palcre3_(int32_t* handle, const char* coverage, const char* subclass,
                     const int32_t* one, int32_t* status, int32_t coverageLength,
                     int32_t subclassLength);

/* Stores one polygon: its box of four reals, and the first arcCount triplets of a memory list of
 * three-word elements. one is 1. number is the caller's count; the polygon gets the number behind
 * the last of the file. */
QX_API void palwtx_(const int32_t* handle, const int32_t* one, const int32_t* number,
                    const double* box, const int32_t* arcCount, const int32_t* list);

/* The same from a QxPolygon with its triplets. A file of boxes keeps the count, which may be any
 * number, and no triplets. */
QX_API void palwt_(const int32_t* handle, const int32_t* number, const void* record);

QX_API void palcls_(const int32_t* handle);

/* Reading. palopn_ opens the polygon file of a coverage, or with kind QX_POLYGON_PATH the one at a
 * path as fname_ gives it; one is 1; status not 0 if there is none. palrec_ gives how many polygons
 * it holds; palpos_ makes the polygon of a record number, from 1, the next one.
 * palrd_ reads the next polygon: its number, its QxPolygon, and as many of its triplets as it has
 *   or there is room for, room given in triplets. status 0, or -1 behind the last one.
 * palrdm_ gives the next triplets of the polygon that was read last, and how many they are: 0 when
 *   there are no more. */
QX_API void palopn_(int32_t* handle, const char* coverageOrPath, const int32_t* one,
                    const int32_t* kind, int32_t* status, int32_t length);
QX_API void palrec_(const int32_t* handle, int32_t* count);
QX_API void palpos_(const int32_t* handle, const int32_t* record, int32_t* status);
QX_API void palrd_(const int32_t* handle, int32_t* number, QxPolygon* polygon, int32_t* arcs,
                   const int32_t* room, int32_t* status);
QX_API void palrdm_(const int32_t* handle, int32_t* arcs, const int32_t* room, int32_t* count);

/* Whether a coverage has a file of polygon boxes: 1 or 0. */
QX_API void pffexi_(const char* coverage, int32_t* flag, int32_t coverageLength);

QX_END

#endif
