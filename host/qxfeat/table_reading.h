/* Attribute tables: finding and reading them. A table is opened with infopn_, mode 1. */
#ifndef HOST_QXFEAT_TABLE_READING_H
#define HOST_QXFEAT_TABLE_READING_H

#include "host/qxfeat/tables.h"

QX_BEGIN

/* A list of the tables in an INFO directory, in the order of their definition. With an owner, the
 * name of a coverage, grid or stack, only the tables that belong to it: owner, ".", suffix, or
 * owner alone. infnxt_ gives the next name; status -1 behind the last. infend_ gives the list up.
 */
QX_API void inflst_(int32_t* list, const char* directory, const char* owner, int32_t* count,
                    int32_t directoryLength, int32_t ownerLength);
QX_API void infnxt_(const int32_t* list, char* name, int32_t* status, int32_t nameLength);
QX_API void infend_(const int32_t* list);

typedef struct QxItem {
    QxItemDescriptor descriptor;
    int32_t number;    /* place among the definitions, from 1; -1 for a redefined item */
    int32_t redefined; /* 1 if it names bytes of other items once more */
    int32_t indexed;   /* 1 if it has an index */
    int32_t kept[6];   /* columns 20-21, 26, 37, 38-39, 40-43, 44-47 */
} QxItem;

/* How many items a table has, whether its records lie in a file of a dataset (1) or in the INFO
 * directory (0), and the item of a place among the definitions, from 1. */
QX_API void infitc_(const int32_t* table, int32_t* items, int32_t* external);
/* How many bytes each record takes where it is stored, with the items that are defined so far. */
QX_API void inflen_(const int32_t* table, int32_t* bytes);
QX_API void infitm_(const int32_t* table, const int32_t* place, QxItem* item, char* name,
                    char* alternateName, int32_t* status, int32_t nameLength,
                    int32_t alternateNameLength);
/* The place of the item of a name, 0 if there is none. Of items with one name, the first. */
QX_API void inffnd_(const int32_t* table, const char* name, int32_t* place, int32_t nameLength);

/* Reads the record of a number, from 1, or the next one, number then telling which.
 * status 0; -1 if there is none. What infval_ gives is of the record that was read last. */
QX_API void infget_(const int32_t* table, const int32_t* number, int32_t* status);
QX_API void infrd_(const int32_t* table, int32_t* number, int32_t* status);

/* The value of an item, redefined ones included: its bytes as text for the types 1 to 3 and for
 * unknown ones, the number as text for the others, and the number in value, 0 for a text that is
 * none. status not 0 if there is no such item or no record was read. */
QX_API void infval_(const int32_t* table, const int32_t* place, double* value, char* text,
                    int32_t* status, int32_t textLength);

/* The bytes of an item in the record that was read last, where they lie: good until the next record
 * is read or the table is closed. status as infval_ has it, and then count is 0. */
QX_API void infbyt_(const int32_t* table, const int32_t* place, const char** bytes, int32_t* count,
                    int32_t* status);

/* Look-up through an item's index. inxfnd_ finds the entries whose key is the value, or the text
 * for the types 1 to 3: first, the place of the first in key order, and how many there are.
 * Without one, first is the place where it would be. inxget_ gives the record of a place.
 * status not 0 if the item has no index that can be read. */
QX_API void inxfnd_(const int32_t* table, const int32_t* place, const double* value,
                    const char* text, int32_t* first, int32_t* count, int32_t* status,
                    int32_t textLength);
QX_API void inxget_(const int32_t* table, const int32_t* place, const int32_t* entry,
                    int32_t* record, int32_t* status);

QX_END

#endif
