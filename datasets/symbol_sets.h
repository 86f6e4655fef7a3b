// Symbol sets and fonts: files of records alone that do not say what they are.
#ifndef DATASETS_SYMBOL_SETS_H
#define DATASETS_SYMBOL_SETS_H

#include <bit>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "datasets/range.h"
#include "host/qxbase/records.h"

namespace datasets {

// Symbols are numbered from 1 to here.
inline constexpr int32_t kHighestSymbol = 1060;

// The words of a record in their order: a run of integers or reals, or the symbol's name.
inline constexpr std::size_t kNameWords = 4;
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

// The layout of a length that one of these gave. Where nothing is known of the words they all
// count as integers.
SetLayout layoutOf(std::string_view kind, int32_t recordBytes);
// The layout of a set that is taken for a kind.
SetLayout layoutOfSet(const std::string& path, std::string_view kind);

// A record as words.
struct WordRecord {
    int32_t number = 0;              // from 1
    std::span<const int32_t> words;  // in the program's byte order

    float real(std::size_t index) const { return std::bit_cast<float>(words[index]); }
    // The bytes of a name's four words from an index on, blanks at its end and all.
    std::string name(std::size_t index) const;
};

class PlainCursor {
  public:
    using Element = WordRecord;
    PlainCursor() = default;
    PlainCursor(std::string_view path, int32_t recordBytes);
    explicit operator bool() const { return bool(handle_); }
    int32_t count() const;
    int64_t fileBytes() const;
    bool next();
    const WordRecord& current() const { return record_; }

  private:
    Handle<iclose_> handle_;
    std::vector<int32_t> words_;
    WordRecord record_;
};
using WordRecords = Range<PlainCursor>;

// The symbols of a set, whose first word is the symbol's number.
inline WordRecords symbols(std::string_view path, const SetLayout& layout) {
    return {path, layout.recordBytes};
}

// A symbol that no reader of the set takes, since its number is none from 1 to kHighestSymbol.
struct StraySymbol {
    int32_t record;
    int32_t number;
};
std::vector<StraySymbol> straySymbols(const std::string& path, const SetLayout& layout);

// The file of a font: its name is in lower case. Empty if there is none.
std::string fontFile(const std::string& path);
// Whether the file's first records are twenty reals of drawing size each.
bool looksLikeFont(const std::string& path);
// The records of a font's file: twenty reals each.
inline constexpr int32_t kFontReals = 20;
inline WordRecords fontRecords(std::string_view file) { return {file, kFontReals * 4}; }

}  // namespace datasets

#endif
