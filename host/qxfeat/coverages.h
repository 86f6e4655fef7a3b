/* Coverages: the directory that holds the files of the features. */
#ifndef HOST_QXFEAT_COVERAGES_H
#define HOST_QXFEAT_COVERAGES_H

#include "host/qx_api.h"

QX_BEGIN

/* Starts the feature library: the precision setting is double and nothing is open. featendC closes
 * what is open, with everything written so far on disk. */
QX_API void featinitC(void);
QX_API void featendC(void);

/* The precision of coverages that are created next. cval_(2) answers 2 for double and 1 for single;
 * any other selector answers 0. */
QX_API int32_t cval_(const int32_t* selector);
QX_API void c32bit_(void);
QX_API void c64bit_(void);

/* Creates an empty coverage in the precision that is set, and the INFO directory of its workspace
 * if it is missing. status not 0 if something of that name exists or it cannot be made. */
QX_API void ccreat_(const char* coverage, int32_t* status, int32_t coverageLength);

/* The precision of a coverage: 2 double, 1 single; 0 if it is no coverage. */
QX_API void ctype_(const char* coverage, int32_t* type, int32_t coverageLength);

/* The extent of a coverage as its features give it: xmin, ymin, xmax, ymax in coverage units. The
 * first of arcs, labels, polygons, polygon boxes, regions, annotation, links and centroids that has
 * any gives it. status not 0 if the coverage holds none of them. */
QX_API void boxget_(const char* coverage, double* box, int32_t* status, int32_t coverageLength);

QX_END

#endif
