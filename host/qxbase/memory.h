/* Memory for tables that grow. */
#ifndef HOST_QXBASE_MEMORY_H
#define HOST_QXBASE_MEMORY_H

#include <stddef.h>

#include "host/qx_api.h"

QX_BEGIN

/* Memory of that many bytes, not cleared; null if there is none. */
QX_API void* QX_Alloc(size_t bytes);
/* The same memory with another size, perhaps at another place, its content kept; null if there is
 * none, and then the old memory stays. A null pointer is fresh memory. */
QX_API void* QX_Realloc(void* memory, size_t bytes);
/* Gives memory back. A null pointer is left alone. */
QX_API void QX_Free(void* memory);

QX_END

#endif
