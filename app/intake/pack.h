// intake pack and intake unpack: an interchange file in another form, or in other volumes.
#ifndef APP_INTAKE_PACK_H
#define APP_INTAKE_PACK_H

#include <cstdint>
#include <string>

#include "app/intake/console.h"
#include "app/intake/source.h"

namespace program {

struct PackOptions {
    SourceOptions source;        // the file in any form, or its first volume
    std::string output;          // the file to make, or its first volume; must not exist
    int32_t level = 0;           // 0 plain, 1 blanks are compressed, 2 numbers too
    int32_t linesPerVolume = 0;  // 0 for one volume
};

// Writes every line of the input to the output, behind a header line of its own; gives the exit
// status. A failure takes away again what was written.
int pack(const PackOptions& options, Console& console);

}  // namespace program

#endif
