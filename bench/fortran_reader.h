// The classical reader, where a Fortran compiler was there when this was built: line reads and
// formatted reads of its runtime.
#ifndef BENCH_FORTRAN_READER_H
#define BENCH_FORTRAN_READER_H

#include <string>

#include "bench/generator.h"

namespace bench {

// Whether there is such a reader for a kind.
bool fortranReads(const Kind& kind);
// Reads the records of a generated file and writes their numbers to another file.
void readByFortran(const std::string& path, const Kind& kind, const std::string& output);

}  // namespace bench

#endif
