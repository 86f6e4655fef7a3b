// The interchange file as a run of logical lines. Volumes and the compressed form end here.
#ifndef STREAM_READER_H
#define STREAM_READER_H

#include <span>

#include "stream/reader_state.h"

namespace intake {

// Reads the first line of the open channel: the version, or that the file has no header line. Run
// once, before any other line is read. Anything that is no version ends the import.
void RDVER(const int32_t& channel);

// Fills a buffer with the next logical line, cut or padded with blanks. All failures are fatal.
void IMPLIN(std::span<char> line);
template <std::size_t N>
void IMPLIN(FixedText<N>& line) {
    IMPLIN(std::span<char>(line.data(), N));
}

// Reads the next physical line, walking on to the next volume where one ends. IMPLIN's own.
// Returns how many characters of the line are in the buffer, padding not counted.
std::size_t IMPCOM(std::span<char> line);

// Ends the import where the host has asked for it.
void stopIfAsked();

// Whether the volume at hand holds nothing more: neither in its file nor, in compressed form, in
// the physical line that was read last.
bool volumeEnded();

// Back to the first line of the first volume, as the precision pass needs it.
void rewindToStart();

}  // namespace intake

#endif
