#include "host/qxbase/memory.h"

#include <cstdlib>

void* QX_Alloc(size_t bytes) { return std::malloc(bytes); }
void* QX_Realloc(void* memory, size_t bytes) { return std::realloc(memory, bytes); }
void QX_Free(void* memory) { std::free(memory); }
