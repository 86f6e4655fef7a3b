/* Start and end of the raster library. */
#ifndef HOST_QXGRIDIO_STARTUP_H
#define HOST_QXGRIDIO_STARTUP_H

#include "host/qx_api.h"

QX_BEGIN

/* Closes what an import left open, with everything written so far on disk. */
QX_API void gridendC(void);

QX_END

#endif
