/* Attribute tables: whole records in one call each, by a plan that is made once. What infenc_ and
 * infput_ (tables.h) do item by item is done at once where nothing asks for more care. */
#ifndef HOST_QXFEAT_TABLE_ROWS_H
#define HOST_QXFEAT_TABLE_ROWS_H

#include "host/qxfeat/tables.h"

QX_BEGIN

/* Makes the plan of a table's records, in place of an earlier one: itemCount items, each with the
 * byte from 0 at which its text begins in a record's text; the place counts for items of type
 * QX_ITEM_CHARACTER alone. To be called when the items are defined. status 0; -1 if there is no
 * such table, no item, or records that need infenc_ for each: with an item of no known kind, one
 * that lies beyond the record, or one whose place another item has. Then there is no plan. */
QX_API void infpln_(const int32_t* table, const QxItemDescriptor* items, const int32_t* itemCount,
                    const int32_t* places, int32_t* status);

/* Packs a record by the plan and stores it under the next number: a value for each item of the
 * plan, of which those of texts do not count, and the record's text. Bytes that no item names are
 * zero. status 0; QX_ROW_NEEDS_CARE, and nothing is stored, if there is no plan, the number is not
 * the next one, a value does not fit, or a text ends beyond textLength; 1 if the record could not
 * be stored. */
#define QX_ROW_NEEDS_CARE (-1)
QX_API void infrow_(const int32_t* table, const int32_t* number, const double* values,
                    const char* text, int32_t* status, int32_t textLength);

QX_END

#endif
