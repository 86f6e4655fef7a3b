// The section routines of plot files and map compositions.
#ifndef PLOTS_SECTIONS_H
#define PLOTS_SECTIONS_H

#include "stream/types.h"

namespace intake {

// Rebuilds a plot file. kSuccess, or another status when the file exists or could not be made,
// which has been reported then.
void IMPPLT(const Name& file, Status& status);

// Rebuilds a map: a directory of plot files. kSuccess; -1 the directory could not be made; -2 what
// stands in the file is no map; -3 an element failed. All but success have been reported.
void IMPMAP(const Name& map, Status& status);

}  // namespace intake

#endif
