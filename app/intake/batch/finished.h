// Files and folders that are finished, and go to where they stay.
#ifndef APP_INTAKE_BATCH_FINISHED_H
#define APP_INTAKE_BATCH_FINISHED_H

#include <cstdint>
#include <string>

namespace program {

// Renames, with the folders above made. What stands there stays, and a std::runtime_error tells of
// it, unless it is to be replaced: a folder goes to aside then, which has to be free.
void putInPlace(const std::string& from, const std::string& to, const std::string& aside,
                bool replace);

// Of a file, or of all files in a folder.
uint64_t bytesOf(const std::string& path);

// Has the system write a file or folder to the disk, and the names on the way to it from a folder
// on. Gives an errno, or 0.
int syncPath(const std::string& folder, const std::string& name);

}  // namespace program

#endif
