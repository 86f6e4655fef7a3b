/* Changes to a workspace: a dataset is removed, renamed or replaced with its tables, as a whole or
 * not at all. A process that is killed on the way leaves either what was, or what wspfin_ or the
 * next change to the workspace brings to its end. Imports may run meanwhile; changes wait for one
 * another.
 *
 * The path of a dataset is that of its file or folder, or, for a table that stands alone, one that
 * ends with its name. A symbolic link is no dataset. The tables of a dataset are those that
 * inflst_ lists for it, but for those that are kept in another dataset or have its name. */
#ifndef HOST_QXFEAT_WORKSPACES_H
#define HOST_QXFEAT_WORKSPACES_H

#include "host/qx_api.h"

QX_BEGIN

enum QxWorkspaceStatus {
    QX_WORKSPACE_CHANGED = 0,
    QX_WORKSPACE_FAILED = -1, /* wrfget_ tells what could not be done, and why */
    QX_WORKSPACE_NOTHING = 1, /* there is no such dataset */
    QX_WORKSPACE_TAKEN = 2,   /* there is something of the new name */
    QX_WORKSPACE_NO_NAME = 3, /* the new name is none that a dataset can have */
    QX_WORKSPACE_OWNED = 4,   /* it is a table that belongs to a dataset */
    QX_WORKSPACE_FOLDERS = 5  /* its folder has a folder in it, which is no part of a dataset */
};

/* Removes a dataset: its file, or its folder with all files in it, and its tables. */
QX_API void wsprem_(const char* dataset, int32_t* status, int32_t datasetLength);

/* Gives a dataset another name in its workspace, and its tables and those of their items that
 * carry the name, as an import under that name does. What speaks of it elsewhere, such as the list
 * of a stack, stays. */
QX_API void wspren_(const char* dataset, const char* name, int32_t* status, int32_t datasetLength,
                    int32_t nameLength);

/* Begins to replace a dataset: beside is the path under which the new one is to be imported, in a
 * workspace of its own. status 0 or -1. wspold_ adds a dataset that goes together with the first,
 * such as the grid of a stack. wspput_ puts all that was imported in the place of these, with
 * status TAKEN and nothing changed where something else is in the way. wspend_ ends the change, and
 * what was imported and not put goes with it. */
QX_API void wspbeg_(int32_t* change, const char* dataset, char* beside, int32_t* status,
                    int32_t datasetLength, int32_t besideLength);
QX_API void wspold_(const int32_t* change, const char* dataset, int32_t* status,
                    int32_t datasetLength);
QX_API void wspput_(const int32_t* change, int32_t* status);
QX_API void wspend_(const int32_t* change);

/* Brings to its end, or gives up, what processes that are no more began in a workspace.
 * status 0 or -1. */
QX_API void wspfin_(const char* workspace, int32_t* status, int32_t workspaceLength);

QX_END

#endif
