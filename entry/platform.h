// The few calls of the desktop platform that ImportFile makes, over whatever this one has for them.
#ifndef ENTRY_PLATFORM_H
#define ENTRY_PLATFORM_H

#include <cstdint>

namespace intake {

using LibraryHandle = void*;

// Loads a companion by the name that the desktop platform knows it by ("qxbase.DLL"); elsewhere
// that is the shared library libqxbase. Null if it cannot be loaded.
LibraryHandle LoadLibraryA(const char* name);

// Lets a library go. A null handle is refused and does nothing.
void FreeLibrary(LibraryHandle library);

// A message box. Where there is no window the text becomes a line on standard error.
void MessageBoxA(void* owner, const char* text, const char* caption, uint32_t style);

}  // namespace intake

#endif
