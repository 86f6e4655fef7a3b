// The section routines of attribute tables, metadata and text.
#ifndef TABLES_SECTIONS_H
#define TABLES_SECTIONS_H

#include "stream/types.h"

namespace intake {

// Tables. INFKND is the kind of the target as tables see it: 1 a coverage, grid or stack, 2 a table
// that stands alone, 5 a TIN, which has none. With IMPSKP the section is only read past. HDRPRC is
// the precision code of the section's own header in a file without a header line, otherwise 0.
// status: kSuccess, or what the definition of a table gave that is there already.
void IMPIFO(const Name& dataset, const int32_t& HDRPRC, const int32_t& SECPRC,
            const int32_t& INFKND, const bool& IMPSKP, Status& status);
// The same for the oldest form. The constant is not looked at.
void IM1IFO(const Name& dataset, const int32_t& one, const int32_t& INFKND, const bool& IMPSKP,
            Status& status);

// The metadata of a dataset, and of its tables.
void IMPMTD(const Name& dataset, Status& status);
void IMPIMD(const Name& dataset, const int32_t& INFKND, Status& status);

// A text file.
void IMPASC(const Name& dataset, Status& status);

// Puts what outlives a section back to its start.
void rearmTables();

}  // namespace intake

#endif
