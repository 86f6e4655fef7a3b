// What a coverage is on disk, and the files of features inside it.
#ifndef COMPANIONS_QXFEAT_COVERAGE_H
#define COMPANIONS_QXFEAT_COVERAGE_H

#include <memory>
#include <string>
#include <string_view>

#include "companions/store/record_file.h"

namespace qxfeat {

// Bytes of a stored coordinate, 4 or 8; 0 if the path is no coverage.
int32_t coordinateBytes(const std::string& coverage);

// A feature file of a coverage, open for writing behind what it holds, with a fixed record length
// in bytes or 0 for records of any length. Null if the coverage is none or the file does not open.
std::unique_ptr<store::RecordWriter> createFeatures(std::string_view coverage, int32_t code,
                                                    int32_t recordBytes,
                                                    std::string_view subclass = {});

// The same for reading; null if there is none.
std::unique_ptr<store::RecordReader> openFeatures(std::string_view coverage, int32_t code,
                                                  std::string_view subclass = {});

}  // namespace qxfeat

#endif
