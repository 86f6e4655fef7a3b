// A folder of the system whose files are in memory.
#ifndef APP_INTAKE_BATCH_MEMORY_FOLDER_H
#define APP_INTAKE_BATCH_MEMORY_FOLDER_H

#include <cstdint>
#include <string>

namespace program {

// One that takes so many bytes at least, for this user; "" where there is none.
std::string memoryFolder(uint64_t bytes);

}  // namespace program

#endif
