// The section routines of a coverage.
#ifndef COVERAGE_SECTIONS_H
#define COVERAGE_SECTIONS_H

#include "stream/types.h"

namespace intake {

// Each takes the coverage's name, the section's precision code, and a status: kSuccess when the
// section was read to its end, kReported when its file could not be made.
void IMPARC(const Name& dataset, const int32_t& precision, Status& status);
void IMPLAB(const Name& dataset, const int32_t& precision, Status& status);
void IMPCNT(const Name& dataset, const int32_t& precision, Status& status);
void IMPPAL(const Name& dataset, const int32_t& precision, Status& status);
void IMPPFF(const Name& dataset, const int32_t& precision, Status& status);
void IMPLNK(const Name& dataset, const int32_t& precision, Status& status);
void IMPRXP(const Name& dataset, const int32_t& precision, Status& status);
void IMPRPL(const Name& dataset, const int32_t& precision, Status& status);

// Texts and integers alone, so that the precision does not matter.
void IMPADP(const Name& dataset, Status& status);
void IMPADI(const Name& dataset, Status& status);

void IMPTOL(const Name& dataset, const int32_t& precision, Status& status);
// Annotation: the oldest form, and the two with subclasses.
void IMPTXT(const Name& dataset, const int32_t& precision, Status& status);
void IMPTX6(const Name& dataset, const int32_t& precision, Status& status);
void IMPTX7(const Name& dataset, const int32_t& precision, Status& status);

// Notes which spatial indexes are asked for. IMPCLR forgets the requests when an import starts.
void IMPSIN(const Name& dataset, Status& status);
void IMPCLR();
// Builds the indexes that were asked for from what the coverage holds, with a warning for each that
// cannot be built.
void IMPSPX(const Name& dataset, Status& status);
// Builds what IMPSPX has put off.
void finishIndexes(const Name& dataset);

// The log and the projection of any kind of dataset; with skip their lines are dropped. The status
// is that of creating the file.
void IMPLOG(const Name& dataset, const bool& skip, Status& status);
void IMPPRJ(const Name& dataset, const bool& skip, Status& status);

// Forgets what an import left half done.
void rearmCoverage();

}  // namespace intake

#endif
