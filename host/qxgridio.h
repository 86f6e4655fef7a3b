/* libqxgridio: lattices, grids and stacks. */
#ifndef HOST_QXGRIDIO_H
#define HOST_QXGRIDIO_H

#include "host/qxgridio/grids.h"
#include "host/qxgridio/lattices.h"
#include "host/qxgridio/nodata.h"
#include "host/qxgridio/rasters.h"
#include "host/qxgridio/stacks.h"
#include "host/qxgridio/startup.h"

#endif
