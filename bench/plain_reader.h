// The reader that anybody would write first: fgets, cut, strtod or strtol, fwrite.
#ifndef BENCH_PLAIN_READER_H
#define BENCH_PLAIN_READER_H

#include <cstdint>
#include <string>

#include "bench/generator.h"

namespace bench {

// Reads the records of a generated file, plain or compressed, and writes their numbers and texts to
// another file. Returns how many records there were.
uint64_t readPlainly(const std::string& path, const Kind& kind, const std::string& output,
                     bool packed = false);

// A field cut out of a line by the C library's means.
double plainReal(const char* field, int width);
int32_t plainInteger(const char* field, int width);

}  // namespace bench

#endif
