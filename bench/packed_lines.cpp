#include "bench/packed_lines.h"

#include <cstring>

namespace bench {

// Copies characters up to "~}", a mark that counts behind an even number of "~" only.
bool PackedLines::assemble() {
    length_ = 0;
    int escapes = 0;
    for (;;) {
        if (*at_ == '\0' || *at_ == '\n') {
            if (!std::fgets(physical_, sizeof physical_, file_)) return false;
            at_ = physical_;
            continue;
        }
        const char character = *at_++;
        if (length_ + 1 < static_cast<int>(sizeof packed_)) packed_[length_++] = character;
        if (character == '}' && escapes % 2 == 1) break;
        escapes = character == '~' ? escapes + 1 : 0;
    }
    length_ -= 2;
    return true;
}

bool PackedLines::next(char* line, int capacity) {
    if (!assemble()) return false;
    char out[1024];
    int size = 0;
    int index = 0;
    while (index < length_ && size < 600) {
        const char character = packed_[index++];
        if (character != '~') {
            out[size++] = character;
            continue;
        }
        int header = packed_[index++] - 33;
        if (header < 0) {
            const int blanks = packed_[index++] - 32;
            std::memset(out + size, ' ', static_cast<std::size_t>(blanks));
            size += blanks;
            continue;
        }
        const int start = size;
        while (index < length_ && packed_[index] != ' ' && packed_[index] != '~') {
            int pair = packed_[index++] - 33;
            if (pair == 92) pair = packed_[index++] + 59;
            out[size++] = static_cast<char>('0' + pair / 10);
            out[size++] = static_cast<char>('0' + pair % 10);
        }
        if (header >= 45) {
            header -= 45;
            --size;
        }
        if (header % 15 != 0) {
            const int point = start + header % 15;
            std::memmove(out + point + 1, out + point, static_cast<std::size_t>(size - point));
            out[point] = '.';
            ++size;
        }
        if (header >= 15) {
            out[size] = out[size - 2];
            out[size + 1] = out[size - 1];
            out[size - 2] = 'E';
            out[size - 1] = header < 30 ? '+' : '-';
            size += 2;
        }
        if (index + 1 < length_ && packed_[index] == '~' && packed_[index + 1] != ' ') ++index;
    }
    const int kept = size < capacity ? size : capacity;
    std::memcpy(line, out, static_cast<std::size_t>(kept));
    std::memset(line + kept, ' ', static_cast<std::size_t>(capacity - kept));
    return true;
}

}  // namespace bench
