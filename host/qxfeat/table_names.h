/* What the name of a table or a workspace says. */
#ifndef HOST_QXFEAT_TABLE_NAMES_H
#define HOST_QXFEAT_TABLE_NAMES_H

#include "host/qx_api.h"

QX_BEGIN

/* The suffix of a table's name: what stands from its last "." on, that "." first; blank if it has
 * none. A suffix that does not fit is cut. */
QX_API void eextsns_(const char* name, char* suffix, int32_t nameLength, int32_t suffixLength);

/* Whether a table belongs to a subclass of a coverage, such as that of PARCELS.PATZONES: flag 1 and
 * the subclass, or flag 0 and blanks. status is always 0. */
QX_API void ruscls_(const char* coverage, const char* table, char* subclass, int32_t* flag,
                    int32_t* status, int32_t coverageLength, int32_t tableLength,
                    int32_t subclassLength);

/* Whether the workspace of a dataset keeps statistics in reals of eight bytes: result not 0. Every
 * workspace does whose catalogue does not say otherwise. */
QX_API void is83workspace_(const char* dataset, int32_t* result, int32_t datasetLength);

QX_END

#endif
