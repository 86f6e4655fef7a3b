// Texts in a dump.
#ifndef APP_INTAKE_DUMP_TEXTS_H
#define APP_INTAKE_DUMP_TEXTS_H

#include "app/intake/dump/dump.h"
#include "datasets/side_texts.h"

namespace program {

// One object of a class with the lines of a text file, if there is one; table, if it is not empty,
// is the table that the text belongs to.
void dumpText(Dump& dump, const char* className, datasets::Lines lines,
              std::string_view table = {});

}  // namespace program

#endif
