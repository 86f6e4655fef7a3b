/* What is wrong in a workspace: the list of its tables, the files of these, and the files of
 * datasets that say how long they are. Everything is found when the check begins. Imports may run
 * meanwhile; what one of them is writing may be told as unfinished or unlisted. */
#ifndef HOST_QXFEAT_WORKSPACE_CHECK_H
#define HOST_QXFEAT_WORKSPACE_CHECK_H

#include "host/qx_api.h"

QX_BEGIN

enum QxFault {
    QX_FAULT_LIST = 1,    /* the list of tables cannot be read to its end: its file */
    QX_FAULT_MISSING = 2, /* a table is listed and has no definition: its name */
    QX_FAULT_TABLE = 3, /* the definition or the records of a listed table are damaged: its name */
    QX_FAULT_RECORDS = 4,   /* a file of a dataset holds less than it says: its path */
    QX_FAULT_EMPTY = 5,     /* a file of a dataset has no head, or zeros in its place: its path */
    QX_LEFT_UNFINISHED = 6, /* a file was being written when its import ended: its path */
    QX_LEFT_UNLISTED = 7    /* a file of a table that is not listed: its path */
};

enum QxMending {
    QX_MENDS_NOT = 0,
    QX_MENDS = 1,      /* wsfmnd_ mends it */
    QX_MENDS_LATER = 2 /* it would, but an import of the last minutes may still be writing it */
};

/* Looks through a workspace. status 0, or -1 if the path is no folder. */
QX_API void wsfopn_(int32_t* check, const char* workspace, int32_t* status,
                    int32_t workspaceLength);
/* The next fault: one of QxFault, what it is about, and whether it can be mended. status 0; -1 when
 * there is none left. */
QX_API void wsfget_(const int32_t* check, int32_t* fault, char* about, int32_t* mending,
                    int32_t* status, int32_t aboutLength);
/* Mends the one that wsfget_ gave last: a damaged list is written anew with all tables whose files
 * are sound, a table without files goes from the list, a file that nothing lists is removed.
 * status 0, or -1 if it cannot be mended, or not any more: wrfget_ may tell why. */
QX_API void wsfmnd_(const int32_t* check, int32_t* status);
QX_API void wsfcls_(const int32_t* check);

QX_END

#endif
