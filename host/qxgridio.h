/* libqxgridio: lattices and grids. */
#ifndef HOST_QXGRIDIO_H
#define HOST_QXGRIDIO_H

#include "host/qxgridio/startup.h"

#endif
