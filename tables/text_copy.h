// Copies the body of a metadata section to a file.
#ifndef TABLES_TEXT_COPY_H
#define TABLES_TEXT_COPY_H

#include "stream/types.h"

namespace intake {

// Reads lines up to "EOD" into a new file. A file that exists or cannot be made is reported; then
// nothing is read. status: kSuccess, kReported, or what the creation gave.
void IMPTXF(const Name& file, Status& status);

// Reads the lines of a body, up to "EOD", for nothing.
void passText();

}  // namespace intake

#endif
