// The driver of an import, and what is put right before and after it.
#ifndef ENTRY_IMPORT_DRIVER_H
#define ENTRY_IMPORT_DRIVER_H

#include <cstdint>
#include <string_view>

namespace intake {

// Runs one import: opens the file, decides the kind of dataset from the first section unless kind
// says it, creates it, and has each section read by its routine. Reports through the message
// service; an error unwinds out of it by an exception.
void IMPSUB(std::string_view dataset, std::string_view file, const int32_t& kind);

// Puts everything process-wide back to its start, so that an import behaves like the first.
void rearmImport();

// Tells the host which line an import was in that is ended by an error.
void tellWhereItEnded();

// Releases what an import that was unwound left open. Deletes its scratch list, and nothing of the
// dataset.
void releaseImport();

}  // namespace intake

#endif
