/* Directories and the state of the process and of new coverages. */
#ifndef HOST_QXBASE_DIRECTORIES_H
#define HOST_QXBASE_DIRECTORIES_H

#include "host/qx_api.h"

QX_BEGIN

/* Creates a directory. status not 0 if it could not be made or is there already. */
QX_API void dcreat_(const char* directory, int32_t* status, int32_t directoryLength);

/* The same for a terminated path; gives the status. */
QX_API int32_t dcreatC(const char* directory);

/* status 0 if the path is a directory. */
/* A symbolic link is no directory here. */
QX_API void dexist_(const char* directory, int32_t* status, int32_t directoryLength);

/* The directory that was entered last, or the current directory of the process; blank if it does
 * not fit. */
QX_API void dget_(char* directory, int32_t directoryLength);

/* Enters a directory and remembers the old one; dpop_ returns to it. Plain record files with a
 * relative name are found in the directory entered. The current directory of the process is the
 * host's and does not change, so that everything else, the next volume of the interchange file
 * among it, is found from where the import began. */
QX_API void dpush_(const char* directory, int32_t* status, int32_t directoryLength);
QX_API void dpop_(void);

/* Opens a directory to read the names in it, "." and ".." not among them, in the order of their
 * bytes. dread_ gives the next name; status -1 behind the last. */
QX_API void dopen_(int32_t* handle, const char* directory, int32_t* status,
                   int32_t directoryLength);
QX_API void dread_(const int32_t* handle, char* name, int32_t* status, int32_t nameLength);
QX_API void dclose_(const int32_t* handle);

/* Creates the INFO directory of a workspace: that of the directory which holds the given path.
 * Does nothing if it is there. */
QX_API void creift_(const char* path, int32_t* status, int32_t pathLength);

QX_END

#endif
