/* How far an import is, for a host that wants to show it. */
#ifndef HOST_QXBASE_PROGRESS_H
#define HOST_QXBASE_PROGRESS_H

#include "host/qx_api.h"

QX_BEGIN

enum QxProgressEvent {
    QX_SECTION_BEGINS = 1, /* lines is 0 */
    QX_SECTION_GOES_ON = 2,
    QX_SECTION_ENDS = 3,
    QX_KIND_DECIDED = 4 /* lines is 0 */
};

/* Told once when the kind of dataset is known, at the start and end of each section and every few
 * thousand lines inside one.
 * code    the section's code, or the label of the kind ("Coverage"), terminated, without trailing
 *         blanks; empty where a section goes on
 * lines   logical lines of the section read so far, its header line not counted; where a section
 *         goes on, those of the whole file
 * bytes   bytes of the current volume read so far */
typedef void (*QxProgress)(int32_t event, const char* code, int64_t lines, int64_t bytes,
                           void* user);

/* Sets the host's function; null for none. Stays in force until it is set again. */
QX_API void prgset_(QxProgress progress, void* user);

/* Told by the importer; passed on to the host's function. */
QX_API void prgtel_(const int32_t* event, const char* code, const int64_t* lines,
                    const int64_t* bytes, int32_t codeLength);

QX_END

#endif
