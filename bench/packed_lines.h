// The lines of a file in the compressed form, as anybody would get at them first: fgets, and one
// character after another.
#ifndef BENCH_PACKED_LINES_H
#define BENCH_PACKED_LINES_H

#include <cstdio>
#include <string>

namespace bench {

class PackedLines {
  public:
    explicit PackedLines(std::FILE* file) : file_(file) {}

    // The next logical line, expanded and padded with blanks to the capacity; false at the end.
    bool next(char* line, int capacity);

  private:
    bool assemble();

    std::FILE* file_;
    char physical_[256] = "";
    const char* at_ = physical_;
    char packed_[512];
    int length_ = 0;
};

}  // namespace bench

#endif
