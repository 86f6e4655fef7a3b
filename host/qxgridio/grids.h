/* Grids: cell rasters of integer or single-precision floating cells, written from the top row down.
 *
 * The operations in mixed case are plain C functions: numbers go by value, names are terminated.
 * A grid is a directory that holds its cells, and beside them its log, projection text, metadata
 * and the data of its tables. */
#ifndef HOST_QXGRIDIO_GRIDS_H
#define HOST_QXGRIDIO_GRIDS_H

#include "host/qx_api.h"

QX_BEGIN

/* Starts the library; may be called any number of times and closes nothing. */
QX_API void GridIOInit(void);

/* Creates a grid without cells, and the INFO directory of its workspace if it is missing.
 * two, one    always these values
 * descriptor  six words: the first three are not looked at, then -1, the cell type (1 for integer
 *             cells, any other value for floating ones) and 0
 * cellSize    width and height of a cell in map units
 * bounds      lowest x, lowest y, highest x, highest y
 * Columns and rows are the bounds over the cell size, rounded. Gives the channel of the grid, from
 * 1, open for writing; negative if something of that name exists, the cell size is not above 0, the
 * bounds are not finite, columns or rows are less than 1 or above QX_MAXIMUM_SIDE, or nothing can
 * be made there. Nothing is left behind then. */
QX_API int32_t CellLyrCreate(const char* name, int32_t two, int32_t one, const int32_t* descriptor,
                             const double* cellSize, const double* bounds);

/* Sets the window through which rows are written. It is the whole grid: any other bounds or cell
 * size give a negative answer, as does a number that is no open channel. */
QX_API int32_t PrivateWindowSet(int32_t channel, const double* bounds, const double* cellSize,
                                const double* windowBounds);

/* Size of the window; 0 for a number that is no open channel. */
QX_API int32_t PrivateWindowRows(int32_t channel);
QX_API int32_t PrivateWindowCols(int32_t channel);

/* Writes a row of the window, as many 32-bit words as it has columns. Rows count from 0, the top
 * one. A row may be written again; one that skips others gives a negative answer, as does a failed
 * write. */
QX_API int32_t PutWindowRow(int32_t channel, int32_t row, const void* cells);

QX_API void CellLyrChannelClose(int32_t channel);

/* Removes a grid's cells, and its directory if that holds nothing else. Any other name is left
 * alone. */
QX_API void CellLyrDelete(const char* name);

/* Memory for count elements of the given number of bytes, null if there is none. CResize1 makes it
 * larger: what it held is kept, the rest is not set; on null the old memory stays. CFree1 frees it.
 */
QX_API void* CAllocate1(int32_t count, int32_t elementBytes);
QX_API void* CResize1(void* memory, int32_t count, int32_t elementBytes);
QX_API void CFree1(void* memory);

/* Whether the path is a grid: -1 or 0. */
QX_API void grdexi_(const char* path, int32_t* isGrid, int32_t pathLength);

/* A grid's cells carry their statistics: the lowest and the highest value of the rows that were
 * written. staqtrue_ tells whether they are there and no statistics table has taken them yet (flag
 * -1 or 0); status not 0 if the path is no grid. staconv_ notes that the table's figures stand for
 * them from now on; its second argument is 0. */
QX_API void staqtrue_(const char* grid, int32_t* flag, int32_t* status, int32_t gridLength);
QX_API void staconv_(const char* grid, const int32_t* zero, int32_t* status, int32_t gridLength);

QX_END

#endif
