/* libqxfeat: coverages and their features, attribute tables, spatial indexes. */
#ifndef HOST_QXFEAT_H
#define HOST_QXFEAT_H

#include "host/qxfeat/annotation.h"
#include "host/qxfeat/arcs.h"
#include "host/qxfeat/boxes.h"
#include "host/qxfeat/centroids.h"
#include "host/qxfeat/coverages.h"
#include "host/qxfeat/index.h"
#include "host/qxfeat/labels.h"
#include "host/qxfeat/links.h"
#include "host/qxfeat/numbers.h"
#include "host/qxfeat/polygons.h"
#include "host/qxfeat/region_pairs.h"
#include "host/qxfeat/subclasses.h"
#include "host/qxfeat/table_names.h"
#include "host/qxfeat/table_reading.h"
#include "host/qxfeat/table_rows.h"
#include "host/qxfeat/tables.h"
#include "host/qxfeat/tolerances.h"
#include "host/qxfeat/workspace_check.h"
#include "host/qxfeat/workspaces.h"

#endif
