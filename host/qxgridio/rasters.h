/* Reading lattices and grids by windows of a row. */
#ifndef HOST_QXGRIDIO_RASTERS_H
#define HOST_QXGRIDIO_RASTERS_H

#include "host/qx_api.h"

QX_BEGIN

/* The most columns or rows that a raster may have. */
#define QX_MAXIMUM_SIDE 268435456

enum QxRasterKind { QX_LATTICE = 1, QX_GRID = 2 };

enum QxCellType { QX_INTEGER_CELLS = 1, QX_FLOATING_CELLS = 2 };

typedef struct QxRaster {
    int32_t columns;
    int32_t rows;
    int32_t rowsWritten;  /* from the top; the rows below have no data */
    int32_t cellType;     /* QxCellType */
    double lowerLeft[2];  /* x, y: of a lattice its origin, of a grid the corner of its bounds */
    double upperRight[2]; /* x, y: of a lattice its last mesh point */
    double cellSize[2];   /* in x, in y: of a lattice its spacing */
    double range[2];      /* lowest and highest: of a lattice as it was given, of a grid that of its
                             cells, or both 0 where no cell has data */
} QxRaster;

/* Opens a raster of one kind for reading. status not 0 if there is none at that path. */
QX_API void rasopn_(int32_t* handle, const char* path, const int32_t* kind, int32_t* status,
                    int32_t pathLength);
QX_API void rasdes_(const int32_t* handle, QxRaster* raster, int32_t* status);

/* Reads cells of a row: count of them from a column on, both counted from 0, as 32-bit integers or
 * single-precision reals by the raster's cell type. A row that was never written, or that a damaged
 * file does not hold, reads as no data. status not 0 if the window is not inside the raster. */
QX_API void rasrd_(const int32_t* handle, const int32_t* row, const int32_t* column,
                   const int32_t* count, void* cells, int32_t* status);
QX_API void rascls_(const int32_t* handle);

QX_END

#endif
