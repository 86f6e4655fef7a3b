// A folder in memory for what a target writes, gone when the process ends.
#ifndef FUZZ_SCRATCH_H
#define FUZZ_SCRATCH_H

#include <filesystem>
#include <string>
#include <string_view>

namespace fuzz {

class Scratch {
  public:
    Scratch();
    ~Scratch();
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    const std::filesystem::path& root() const { return root_; }
    std::string path(std::string_view name) const { return (root_ / name).string(); }
    void write(std::string_view name, std::string_view bytes) const;
    // Writes the volumes in.e00, in.e01, ... of a text that form feeds part. Returns their number.
    int writeVolumes(std::string_view text) const;
    void clear() const;

  private:
    std::filesystem::path root_;
};

std::string fileBytes(const std::filesystem::path& path);

// Ends the process where a property does not hold, in the way a fuzzer takes for a finding.
void require(bool holds, const char* what);

}  // namespace fuzz

#endif
