/* Stacks: directories that name a list of grids, which lie beside them. */
#ifndef HOST_QXGRIDIO_STACKS_H
#define HOST_QXGRIDIO_STACKS_H

#include "host/qx_api.h"

QX_BEGIN

/* Makes a directory a stack without members and opens its list for writing. status not 0 if that
 * cannot be done, and nothing is open. */
QX_API void stkcre_(int32_t* handle, const char* stack, int32_t* status, int32_t stackLength);

/* Adds a member behind the last one; of its name 80 characters are kept. */
QX_API void stkadd_(const int32_t* handle, const char* member, int32_t* status,
                    int32_t memberLength);

QX_API void stkcls_(const int32_t* handle);

/* How many members a stack has. status not 0 if the path is no stack. */
QX_API void saknly_(const char* stack, int32_t* count, int32_t* status, int32_t stackLength);

/* The name of a member by its number, from 1. status not 0 if there is none of that number. */
QX_API void stkgnm_(const char* stack, const int32_t* number, char* name, int32_t* status,
                    int32_t stackLength, int32_t nameLength);

QX_END

#endif
