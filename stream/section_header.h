// Where a section begins, and how wide its reals are.
#ifndef STREAM_SECTION_HEADER_H
#define STREAM_SECTION_HEADER_H

#include <cstdint>
#include <span>

namespace intake {

// Reads on to the next section header, passing over every line that is none. Gives the section's
// number, and its precision code if the section is not the end of the file. The default code is
// not looked at. A code that is not in the table of legal ones ends the import.
void IMPHDR(int32_t& number, int32_t defaultCode, std::span<const int32_t> codes,
            int32_t& precision);

// The precision pass over a file without a header line: hint becomes 2 where the first section's
// arcs show reals of 14 columns, otherwise 0. The file is back at its start afterwards.
void IMPPRC(int32_t& hint);

}  // namespace intake

#endif
