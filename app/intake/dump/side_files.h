// The texts beside a dataset of any kind: its log, its projection and its metadata.
#ifndef APP_INTAKE_DUMP_SIDE_FILES_H
#define APP_INTAKE_DUMP_SIDE_FILES_H

#include <string>
#include <string_view>

#include "app/intake/dump/dump.h"

namespace program {

// Each writes one object, if the dataset at the path has the text and the class is wanted.
void dumpLog(Dump& dump, const std::string& dataset);
void dumpProjection(Dump& dump, const std::string& dataset);
void dumpMetadata(Dump& dump, const std::string& dataset);

// All three, for a dataset that has nothing between them.
void dumpSideTexts(Dump& dump, const std::string& dataset);

// One object of a class with the lines of a text file, if there is one at the path and the class is
// wanted; table, if it is not empty, is the table that the text belongs to.
void dumpText(Dump& dump, std::string_view className, const std::string& path,
              std::string_view table = {});

}  // namespace program

#endif
