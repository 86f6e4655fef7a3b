/* Plot files: a recorded drawing. */
#ifndef HOST_QXBASE_PLOTS_H
#define HOST_QXBASE_PLOTS_H

#include "host/qx_api.h"

QX_BEGIN

/* Characters of a record's text and of a title. */
#define QX_PLOT_TEXT 8
#define QX_PLOT_TITLE 136

/* status 0 if something of that name exists. */
QX_API void ptexis_(const char* name, int32_t* status, int32_t nameLength);

/* Creates a plot file, which must not exist: no records, a blank title, and bounds of 9.0E27 for
 * the minima and -9.0E27 for the maxima. */
QX_API void ptcrea_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength);

/* Appends a record: its code, two reals, two integers and a text of 8 characters. */
QX_API void ptwrit_(const int32_t* channel, const int32_t* code, const float* reals,
                    const int32_t* integers, const char* text, int32_t* status, int32_t textLength);

QX_API void ptclos_(const int32_t* channel);

/* Store the bounds, in plot units, and the title in a closed file, and get them. */
QX_API void ptbndw_(const char* name, const float* xmin, const float* ymin, const float* xmax,
                    const float* ymax, int32_t* status, int32_t nameLength);
QX_API void ptbndr_(const char* name, float* xmin, float* ymin, float* xmax, float* ymax,
                    int32_t* status, int32_t nameLength);
QX_API void pthdrw_(const char* name, const char* title, int32_t* status, int32_t nameLength,
                    int32_t titleLength);
QX_API void pthdrr_(const char* name, char* title, int32_t* status, int32_t nameLength,
                    int32_t titleLength);

/* Which of the plot files of its import a file was, from 1. */
QX_API void ptord_(const char* name, int32_t* order, int32_t* status, int32_t nameLength);

/* Opens a plot file for reading; status not 0 if it is none. ptread_ reads its next record into
 * reals[2], integers[2] and a text; status -1 behind the last. */
QX_API void ptopen_(int32_t* channel, const char* name, int32_t* status, int32_t nameLength);
QX_API void ptread_(const int32_t* channel, int32_t* code, float* reals, int32_t* integers,
                    char* text, int32_t* status, int32_t textLength);
/* How many records an open plot file holds. */
QX_API void ptrec_(const int32_t* channel, int32_t* count);

QX_END

#endif
