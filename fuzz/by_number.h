// Reads a damaged dataset as no command does: each record by its number, the last one first.
#ifndef FUZZ_BY_NUMBER_H
#define FUZZ_BY_NUMBER_H

#include <string>

namespace fuzz {

// All features and tables of the dataset at a path, whatever its kind. What by-number and in-order
// reading disagree about fails.
void readByNumber(const std::string& path);

}  // namespace fuzz

#endif
