// A file of our own beside an output, for what waits there until it is written.
#ifndef FORMATS_SCRATCH_H
#define FORMATS_SCRATCH_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>

namespace formats {

// It has no name, and goes away with the process, however that ends.
class Scratch {
  public:
    // Failures name the target.
    Scratch(const std::string& path, std::string target);
    ~Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    void write(int64_t position, std::span<const std::byte> bytes);
    void read(int64_t position, std::span<std::byte> bytes);

  private:
    void seek(int64_t position);

    std::FILE* file_ = nullptr;
    std::string target_;
};

}  // namespace formats

#endif
