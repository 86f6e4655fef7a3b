/* What failed of the machine while datasets were written or read. Routines go on after a write that
 * failed and after a stored file that cannot be read, so that what can be kept or read is; all
 * companions note here what happened, and only the first of each is kept. Noting never fails. */
#ifndef HOST_QXBASE_FAILURES_H
#define HOST_QXBASE_FAILURES_H

#include "host/qx_api.h"

QX_BEGIN

/* Bytes of a path that are kept; what is longer is cut at its front. */
#define QX_FAILURE_PATH 2048

/* Notes that a file or directory could not be made or written: its path (terminated), and errno, or
 * 0 for a file that is damaged and is not written for that. */
QX_API void wrfailC(const char* path, int32_t error);

/* Notes that a file or directory was not made because the name cannot be one, or is another's: its
 * path, and errno. It is nobody's failure but the caller's, who may ask for it: rfsget_ hands out
 * the first one since baseinitC, as wrfget_ does. baseendC keeps it. */
QX_API void refuseC(const char* path, int32_t error);
QX_API void rfsget_(char* path, char* reason, int32_t* status, int32_t pathLength,
                    int32_t reasonLength);

/* Notes that a file could not be read: its path, and errno, or 0 for a file that holds less than it
 * claims. baseendC tells it, as an error that does not end anything: "Could not read %1%: %2%", or
 * "%1% is damaged and cannot be read to its end". */
QX_API void rdfailC(const char* path, int32_t error);

/* Hands out the write that failed first since baseinitC, and forgets it: the path, and the reason
 * as the system words it, or "it is damaged". status 0; -1 if none failed, and both texts are
 * blank. */
QX_API void wrfget_(char* path, char* reason, int32_t* status, int32_t pathLength,
                    int32_t reasonLength);

QX_END

#endif
