// A folder in memory for what a target writes, gone when the process ends.
#ifndef FUZZ_SCRATCH_H
#define FUZZ_SCRATCH_H

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace fuzz {

// A text is at most so many volumes; further form feeds are data.
inline constexpr int kMostVolumes = 4;

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
    void remove(std::string_view name) const;
    void clear() const;

  private:
    std::filesystem::path root_;
};

// What the last import of a target came to.
struct ImportOutcome {
    int32_t result = 0;
    int32_t worst = 0;  // level of the worst message
    bool wentWell() const;
};
extern ImportOutcome lastImport;

std::string fileBytes(const std::filesystem::path& path);

// Ends the process where a property does not hold, in the way a fuzzer takes for a finding.
void require(bool holds, const char* what);

}  // namespace fuzz

#endif
