// The compressed form: blanks in runs, digits packed two to a character, logical lines that run on
// through physical lines and end at "~}".
#ifndef STREAM_COMPRESSED_H
#define STREAM_COMPRESSED_H

#include <cstdint>
#include <span>
#include <string_view>

#include "stream/types.h"

namespace intake {

inline constexpr std::size_t kCompressedLength = 302;
using CompressedLine = FixedText<kCompressedLength>;

// The longest line that can be asked for; a longer buffer is padded with blanks.
inline constexpr std::size_t kLongestDecoded = 512;

// Expands one logical line, its end mark taken off, into line, padded with blanks or cut; count is
// the length of what is there without the padding. Any text is taken: bad text gives bad fields.
// Of the text the first kCompressedLength characters count.
void DCMLIN(std::string_view work, std::span<char> line, int32_t& count);
inline void DCMLIN(const CompressedLine& work, std::span<char> line, int32_t& count) {
    DCMLIN(work.full(), line, count);
}

// Compresses a line at level 1 (blanks and "~" only) or 2 (numbers too). count is the length of the
// result, which is cut where it does not fit.
void CMPLIN(std::span<const char> line, int32_t level, CompressedLine& work, int32_t& count);
// The same without the padding behind the result; gives the count.
std::size_t CMPLIN(std::span<const char> line, int32_t level,
                   std::span<char, kCompressedLength> work);

// The writing side. The state says how: EXPCMP 0 for the plain form, 1 or 2 for the level of the
// compressed one; EXPVER for the version in the header; IMPNAM the first volume; VOLMAX the lines
// in a volume. EXPLIN writes one logical line, EXPFLS what is still in the buffer, EXPCOM one
// physical line, beginning the file or a new volume where it is due. All failures are fatal. With
// onlyCounts nothing is written, and linesCounted has how many physical lines there would be.
void EXPLIN(std::span<const char> line);
void EXPFLS();
void EXPCOM(std::span<const char> line);

// Writes what is still in the buffer and closes the file, with all of it on disk.
void finishExport();

// The highest level, up to the one given, at which a line of at most 300 columns comes back as it
// is: a number in front of "}" or of a "~" at the end of the line breaks the line at level 2, and a
// line of very many "~" fits at neither. 0 if there is none.
int32_t survivingLevel(std::span<const char> line, int32_t level);

}  // namespace intake

#endif
