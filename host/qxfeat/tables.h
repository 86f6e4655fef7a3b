/* Attribute tables: defining one, and filling it with records.
 *
 * A table lives in the INFO directory of a workspace, under a name such as ROADS.AAT. It is named
 * by three texts: the table's name, the INFO directory's path, and a prefix that is kept for other
 * stores and blank here. A table's name is data: no name is a path, and any name will do. */
#ifndef HOST_QXFEAT_TABLES_H
#define HOST_QXFEAT_TABLES_H

#include "host/qx_api.h"

QX_BEGIN

/* Characters in a table's or an item's name: the longest name of a dataset and a suffix fit. */
#define QX_TABLE_NAME_LENGTH 320

/* Item types. The first three and 4 are kept as text. */
enum {
    QX_ITEM_DATE = 1,
    QX_ITEM_CHARACTER = 2,
    QX_ITEM_INTEGER_TEXT = 3,
    QX_ITEM_NUMBER_TEXT = 4,
    QX_ITEM_INTEGER = 5, /* binary, 1, 2, 4 or 8 bytes */
    QX_ITEM_REAL = 6     /* binary, 4 or 8 bytes */
};

/* Where an item lies in a record and how it is kept. */
typedef struct QxItemDescriptor {
    int32_t start; /* first byte in the record, from 1 */
    int32_t width; /* bytes */
    int32_t type;
    int32_t decimals;
    int32_t outputWidth;
} QxItemDescriptor;

/* The place of a coverage's tables and its name, and the same for the path of a table that stands
 * alone. A name that does not fit its buffer is given as blank. */
QX_API void infarc_(const char* coverage, char* directory, char* prefix, char* name,
                    int32_t coverageLength, int32_t directoryLength, int32_t prefixLength,
                    int32_t nameLength);
QX_API void infpth_(const char* path, char* directory, char* prefix, char* name, int32_t pathLength,
                    int32_t directoryLength, int32_t prefixLength, int32_t nameLength);

/* Erases a table with its metadata and indexes. status 0 also where there is none; not 0 if the
 * catalogue of the workspace cannot be changed. Records that lie in a dataset's file stay there. */
QX_API void infers_(const char* name, const char* directory, const char* prefix,
                    const int32_t* zero, int32_t* status, int32_t nameLength,
                    int32_t directoryLength, int32_t prefixLength);

/* Defines a new, empty table, open for its items and records; the INFO directory is made if it is
 * missing. The table is listed, and can be opened by its name, once it is closed.
 * status 0; QX_TABLE_TAKEN if there is a table of that name, or one that is open for its
 * definition; -1 if the table cannot be made: the name is blank or too long, the directory cannot
 * be made, or the catalogue is damaged, full or cannot be changed. The reason is then noted as that
 * of a failed write (failures.h), and a catalogue that is full is told. With a status other than 0
 * no handle is given. */
#define QX_TABLE_TAKEN 1
QX_API void infdef_(const char* name, const char* directory, const char* prefix,
                    const int32_t* zero, int32_t* table, int32_t* status, int32_t nameLength,
                    int32_t directoryLength, int32_t prefixLength);

/* Adds an item definition. redefined: 1 for an item that names bytes of other items once more.
 * The six numbers in between are kept and given back as they are; they are named for their columns
 * in an interchange file. status not 0 for a start below 1, a negative width, an item that ends
 * beyond byte 32766, a name of more than QX_TABLE_NAME_LENGTH characters, the item behind the
 * 9999th, or a table that has records already. */
QX_API void infadi_(const int32_t* table, const int32_t* redefined, const char* name,
                    const char* alternateName, const char* blanks, const int32_t* type,
                    const int32_t* width, const int32_t* outputWidth, const int32_t* decimals,
                    const int32_t* column26, const int32_t* column37, const int32_t* columns38to39,
                    const int32_t* columns20to21, const int32_t* columns40to43,
                    const int32_t* columns44to47, const int32_t* start, int32_t* status,
                    int32_t nameLength, int32_t alternateNameLength, int32_t blanksLength);

/* Has the table's records kept in a dataset's file, which is created anew. To be called when the
 * items are defined and before the first record. status not 0 if the file does not lie in the
 * table's workspace or cannot be made. */
QX_API void infxtn_(const int32_t* table, const char* path, int32_t* status, int32_t pathLength);

/* Opens an existing table. mode 1 to read it and build its indexes, 2 also to add records.
 * Gives the number of records and the bytes in one. status not 0 if there is no such table. */
QX_API void infopn_(const char* name, const char* directory, const char* prefix,
                    const int32_t* mode, int32_t* table, int32_t* recordCount,
                    int32_t* recordLength, int32_t* status, int32_t nameLength,
                    int32_t directoryLength, int32_t prefixLength);

/* Closes a table. A number that is no open table is left alone. */
QX_API void infcls_(const int32_t* table);

/* Packs one item into a record of recordLength bytes, at the descriptor's place: type 2 from the
 * text, of which there are textLength characters, cut or padded to the width; all others from the
 * value. Types 1 and 3 keep its digits, type 4 the number with the item's decimals, both as text
 * that ends with the item.
 * status 0; -1 if the item is of no known kind, does not fit, or lies beyond the record. What lies
 * inside the record is then blank for a text, zero for a binary item. */
QX_API void infenc_(const QxItemDescriptor* item, const double* value, const char* text,
                    const int32_t* recordLength, void* record, int32_t* status, int32_t textLength);

/* Stores a record: that of the next number, or any number of a record that is there. record has
 * the length that the items need, rounded up to an even number of bytes.
 * status not 0 if it could not be stored. */
QX_API void infput_(const int32_t* table, const int32_t* number, const void* record,
                    int32_t* status);

/* The name of the index file of an item, and building it anew. The number of an item is its place
 * among the definitions, from 1. With a blank path the index is that of the item whose place, width
 * and type the descriptor has. A name that does not fit its buffer is given as blank. status not 0
 * if there is no such item or the file cannot be made. */
QX_API void infxnm_(const int32_t* table, const int32_t* item, char* path, int32_t pathLength);
QX_API void inxitm_(const char* path, const int32_t* table, const QxItemDescriptor* item,
                    int32_t* status, int32_t pathLength);

/* The path of the table's metadata file, which need not exist. */
QX_API void infxml_nam_(const int32_t* table, char* path, int32_t pathLength);

QX_END

#endif
