// Interchange text of any size, the same for the same seed: one kind of section a file.
//
// Each kind says how its lines are laid out, so that the plain reader that an import is held
// against can cut them too. A new kind is one more row of kinds().
#ifndef BENCH_GENERATOR_H
#define BENCH_GENERATOR_H

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace bench {

// A run of equal fields: 'I' integers, 'E' reals, 'A' texts.
struct Fields {
    int count;
    char type;
    int width;
};
using LineLayout = std::vector<Fields>;

// A record is its head lines and then, where an integer of the first line counts details, as many
// lines of the detail layout as hold them.
struct RecordLayout {
    std::vector<LineLayout> head;
    int countField = -1;  // which field of the first line, from 0
    LineLayout detail;
    int detailsInLine = 1;
    int joinedLines = 1;  // lines of 80 columns that make one head line
};

struct Kind {
    const char* name;
    std::vector<std::string> prologue;  // lines behind the section header that are no records
    RecordLayout layout;
    const char* header;  // of the section
    std::vector<std::string> epilogue;
    // Appends one record's lines.
    void (*record)(std::string& text, uint64_t number);
};

std::span<const Kind> kinds();
const Kind& kind(const std::string& name);

// A whole file of about so many bytes.
struct Generated {
    std::string text;
    uint64_t records;
};
Generated generate(const Kind& kind, std::size_t bytes);

}  // namespace bench

#endif
