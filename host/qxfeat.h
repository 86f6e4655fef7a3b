/* libqxfeat: coverages and their features, attribute tables, spatial indexes. */
#ifndef HOST_QXFEAT_H
#define HOST_QXFEAT_H

#include "host/qxfeat/arcs.h"
#include "host/qxfeat/coverages.h"
#include "host/qxfeat/numbers.h"

#endif
