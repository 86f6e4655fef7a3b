/* Label points of a coverage. */
#ifndef HOST_QXFEAT_LABELS_H
#define HOST_QXFEAT_LABELS_H

#include "host/qx_api.h"

QX_BEGIN

/* Coordinates are in coverage units. The box is what the writer of the file put there; no meaning
 * is attached to it here. */
typedef struct QxLabel {
    int32_t userId;
    int32_t polygon;
    double x;
    double y;
    double box[4];
} QxLabel;

/* Opens the label file of a coverage for writing, creating it; what is written goes behind the
 * labels that it holds. The two words in between are both 1. status 0, or not 0 and nothing is
 * open. */
QX_API void labcre_(int32_t* handle, const char* coverage, const int32_t* one,
                    const int32_t* oneMore, int32_t* status, int32_t coverageLength);

/* Stores one label, a QxLabel, in the coverage's precision. The scratch integer is neither read
 * nor set. */
QX_API void labwt_(const int32_t* handle, const int32_t* scratch, const void* record);

QX_API void labcls_(const int32_t* handle);

/* Reading. labopn_ opens the label file, status not 0 if there is none; labrec_ gives how many
 * labels it holds; labpos_ makes the label of a record number, from 1, the next one; labrd_ reads
 * the next label and its record number: status 0, or -1 behind the last one. */
QX_API void labopn_(int32_t* handle, const char* coverage, int32_t* status, int32_t coverageLength);
QX_API void labrec_(const int32_t* handle, int32_t* count);
QX_API void labpos_(const int32_t* handle, const int32_t* record, int32_t* status);
QX_API void labrd_(const int32_t* handle, int32_t* number, QxLabel* label, int32_t* status);

QX_END

#endif
