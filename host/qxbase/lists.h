/* Memory lists: growing lists of elements of a fixed number of 32-bit words, indexed from 1. */
#ifndef HOST_QXBASE_LISTS_H
#define HOST_QXBASE_LISTS_H

#include "host/qx_api.h"

QX_BEGIN

/* Makes an empty list; memcr2_ is the same with a wish for room at the start, which is followed
 * only as elements come. */
QX_API void memcre_(const int32_t* wordsPerElement, int32_t* list, int32_t* status);
QX_API void memcr2_(const int32_t* wordsPerElement, const int32_t* capacity, int32_t* list,
                    int32_t* status);
/* Puts an element at an index from 1 to one behind the last; any other index is left alone. */
QX_API void memput_(const int32_t* list, const int32_t* index, const int32_t* element);
/* Gets an element; status not 0 if there is none at that index. */
QX_API void memget_(const int32_t* list, const int32_t* index, int32_t* element, int32_t* status);
/* The words of all elements in order, and how many elements there are. The pointer is good until
 * the list is changed or freed. */
QX_API void memptr_(const int32_t* list, const int32_t** words, int32_t* count);
/* Writes the first count elements as one record of a file made with vcreat_. */
QX_API void memvwt_(const int32_t* handle, const int32_t* number, const int32_t* list,
                    const int32_t* count);
/* Free a list; the two are the same. */
QX_API void memdel_(const int32_t* list);
QX_API void memcls_(const int32_t* list);

QX_END

#endif
