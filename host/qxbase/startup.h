/* Start and end of the base services. */
#ifndef HOST_QXBASE_STARTUP_H
#define HOST_QXBASE_STARTUP_H

#include "host/qx_api.h"

QX_BEGIN

/* Puts all process-wide state of the library back to its start: message queue, precision setting,
 * open channels, files and lists (which are closed). A message sink that a host set stays. */
QX_API void baseinitC(void);

/* Closes what an import left open, with everything written so far on disk. Deletes nothing. */
QX_API void baseendC(void);

QX_END

#endif
