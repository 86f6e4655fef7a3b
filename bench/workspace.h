// The folder that imports are timed in.
#ifndef BENCH_WORKSPACE_H
#define BENCH_WORKSPACE_H

#include <filesystem>

namespace bench {

namespace fs = std::filesystem;

// Where temporary files go (TMPDIR). Gone when the program ends.
const fs::path& folder();

// While one lives, folder() is one in memory where the machine has that: for what is judged and
// must not depend on how a disk feels.
class InMemory {
  public:
    InMemory();
    ~InMemory();
    InMemory(const InMemory&) = delete;
    InMemory& operator=(const InMemory&) = delete;
};

// Imports a file into the workspace; throws where anything but information was said.
void import(const fs::path& file, const char* dataset = "DS");
void clearWorkspace();
// Bytes of all files in the workspace.
std::size_t storedBytes();

}  // namespace bench

#endif
