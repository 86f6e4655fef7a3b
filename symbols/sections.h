// The section routines of symbol sets and fonts.
#ifndef SYMBOLS_SECTIONS_H
#define SYMBOLS_SECTIONS_H

#include "stream/types.h"

namespace intake {

// Each takes the path of the set that it makes, and a status: kSuccess when the section was read
// to its end, kReported when the file exists or could not be made, which has been reported then.
void IMPCLN(const Name& file, Status& status);
void IMPCL6(const Name& file, Status& status);
void IMPCL7(const Name& file, Status& status);
void IMPCMK(const Name& file, Status& status);
void IMPCM6(const Name& file, Status& status);
void IMPCM7(const Name& file, Status& status);
void IMPCSH(const Name& file, Status& status);
void IMPCS6(const Name& file, Status& status);
void IMPCS7(const Name& file, Status& status);
void IMPCTX(const Name& file, Status& status);
void IMPCT7(const Name& file, Status& status);

// The same for a font, whose file has the path's name in lower case. A status of -2: a record
// could not be written, which has been reported.
void IMPFNT(const Name& file, Status& status);

}  // namespace intake

#endif
