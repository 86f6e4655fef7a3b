// The folder that imports are timed in.
#ifndef BENCH_WORKSPACE_H
#define BENCH_WORKSPACE_H

#include <filesystem>

namespace bench {

namespace fs = std::filesystem;

// Gone when the program ends.
const fs::path& folder();

// Imports a file into the workspace; throws where anything but information was said.
void import(const fs::path& file, const char* dataset = "DS");
void clearWorkspace();
// Bytes of all files in the workspace.
std::size_t storedBytes();

}  // namespace bench

#endif
