// Symbol sets and fonts: files of records alone that do not say what they are.
#ifndef APP_INTAKE_SYMBOL_SETS_H
#define APP_INTAKE_SYMBOL_SETS_H

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace program {

// Symbols are numbered from 1 to here.
inline constexpr int32_t kHighestSymbol = 1060;

// The words of a record in their order: a run of integers or reals, or the symbol's name.
struct WordRun {
    char kind;  // 'i' integers, 'r' reals, 'n' the name's four words
    int count;
};

struct SetLayout {
    int32_t recordBytes;
    std::vector<WordRun> words;
};

// The record length of a set of a kind ("Lineset File" and its kin), found by trial: the lengths of
// the kind in their order, and the first with which the first ten records all begin with a symbol
// number. 0 if none fits. A file without records fits the kind's first length.
int32_t findRecordBytes(const std::string& path, std::string_view kind);

// The same for a file that the user says is of the kind: where none fits, for symbols that are
// numbered otherwise, the length of the kind that divides the file with the most symbol numbers.
int32_t findRecordBytesOfNamed(const std::string& path, std::string_view kind);

// A symbol that no reader of the set takes, since its number is none from 1 to kHighestSymbol.
struct StraySymbol {
    int32_t record;
    int32_t number;
};
std::vector<StraySymbol> straySymbols(const std::string& path, int32_t recordBytes);

// The layout of a length that one of these gave. Where nothing is known of the words they all
// count as integers.
SetLayout layoutOf(std::string_view kind, int32_t recordBytes);

// The file of a font: its name is in lower case. Empty if there is none.
std::string fontFile(const std::string& path);
// Whether the file's first records are twenty reals of drawing size each.
bool looksLikeFont(const std::string& path);

}  // namespace program

#endif
