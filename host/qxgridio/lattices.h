/* Lattices: regular meshes of single-precision heights, written from the top row down. */
#ifndef HOST_QXGRIDIO_LATTICES_H
#define HOST_QXGRIDIO_LATTICES_H

#include "host/qx_api.h"

QX_BEGIN

/* Whether a lattice of that name exists: -1 or 0. */
QX_API void latexi_(const char* name, int32_t* exists, int32_t nameLength);

/* Creates a lattice without heights and opens it for writing.
 * columns, rows       0 or less is a lattice that holds nothing
 * originX, originY    the lower left mesh point
 * spacingX, spacingY  distance of the mesh points in map units
 * status              0; not 0 if there is such a lattice, it cannot be made, or columns or rows
 *                     are above QX_MAXIMUM_SIDE; nothing is open or left behind then */
QX_API void latcre_(const char* name, int32_t* handle, const int32_t* columns, const int32_t* rows,
                    const double* originX, const double* originY, const double* spacingX,
                    const double* spacingY, int32_t* status, int32_t nameLength);

/* Records the range of heights. */
QX_API void latrng_(const int32_t* handle, const float* lowest, const float* highest);

/* Appends the next row: count heights, of which those beyond the lattice's columns are dropped; a
 * column that is not given has no data. status not 0 if all rows are there or the write failed. */
QX_API void latwt_(const int32_t* handle, int32_t* status, const float* heights,
                   const int32_t* count);

QX_API void latcls_(const int32_t* handle, int32_t* status);

QX_END

#endif
