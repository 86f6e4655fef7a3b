/* How far an import is, for a host that wants to show it. */
#ifndef HOST_QXBASE_PROGRESS_H
#define HOST_QXBASE_PROGRESS_H

#include "host/qx_api.h"

QX_BEGIN

enum QxProgressEvent {
    QX_SECTION_BEGINS = 1, /* lines is 0 */
    QX_SECTION_GOES_ON = 2,
    QX_SECTION_ENDS = 3,
    QX_KIND_DECIDED = 4,   /* lines is 0 */
    QX_SECTION_HEADER = 5, /* lines is the precision code of the section that begins: 1, 2 or 3 */
    QX_IMPORT_ENDED = 6    /* by an error: code is the volume, lines the last of its lines read */
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

/* Asks the import that runs, or else the next one, to end as by an error: asked is not 0, or 0 to
 * take the wish back. It ends where the next section or the next line begins, and says where; what
 * was imported until there stays. May be called at any time, from any thread and from the handler
 * of a signal. Stays in force until it is set again. */
QX_API void prgstp_(const int32_t* asked);

/* Looked at by the importer: asked is not 0 where it is to end. */
QX_API void prgask_(int32_t* asked);

/* Says where the importer keeps the number of the line behind which it looks up: it tells of its
 * progress, sets the number anew and only then calls prgask_. prgstp_ sets it to 0 behind the wish,
 * so that a wish costs nothing until there is one. Both set it, and the importer reads it, as one
 * piece. Null for none; stays in force until it is said again. */
QX_API void prgdue_(int64_t* line);

/* Told by the importer; passed on to the host's function. */
QX_API void prgtel_(const int32_t* event, const char* code, const int64_t* lines,
                    const int64_t* bytes, int32_t codeLength);

QX_END

#endif
