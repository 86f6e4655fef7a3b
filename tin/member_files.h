// The member files of a surface as the sections write them: each anew, from its start, in chunks.
#ifndef TIN_MEMBER_FILES_H
#define TIN_MEMBER_FILES_H

#include <cstdint>

#include "stream/types.h"

namespace intake {

inline constexpr int32_t kEnvironmentFile = 75;
inline constexpr int32_t kOlderEnvironmentFile = 88;
inline constexpr int32_t kMaskFile = 74;

// The path of a member by its file code, 50 to 56, 74 or 75. A surface of the older generation has
// a file of the older name, and that is the one; any other gets the plain name.
void tifnam(const Name& surface, Name& path, int32_t code);

// What the words of a transfer are. Identifiers go with kSingles: their bits are turned the same.
enum class Words : int32_t {
    kEnvironment = 1,
    kDoubles = 2,
    kSingles = 3,
    kTriangleNodes = 4,
    kHull = 5,
    kTriangleEdges = 6
};

void tifcre(Handle& channel, const Name& path, Status& status);
// Writes count 4-byte words; the buffer is as it was afterwards. An environment is asked for with
// 40 words: a TINENV with zeros behind it.
void tifput(const Handle& channel, int32_t count, void* buffer, Words kind);
void tifcls(const Handle& channel);

}  // namespace intake

#endif
