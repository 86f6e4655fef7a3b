/* libqxbase: messages, text channels, names, record files, lists, byte order, directories. */
#ifndef HOST_QXBASE_H
#define HOST_QXBASE_H

#include "host/qxbase/bitmaps.h"
#include "host/qxbase/byte_order.h"
#include "host/qxbase/channels.h"
#include "host/qxbase/directories.h"
#include "host/qxbase/failures.h"
#include "host/qxbase/lists.h"
#include "host/qxbase/members.h"
#include "host/qxbase/memory.h"
#include "host/qxbase/messages.h"
#include "host/qxbase/names.h"
#include "host/qxbase/plots.h"
#include "host/qxbase/progress.h"
#include "host/qxbase/records.h"
#include "host/qxbase/scratch.h"
#include "host/qxbase/sort.h"
#include "host/qxbase/startup.h"
#include "host/qxbase/strings.h"
#include "host/qxbase/tins.h"

#endif
