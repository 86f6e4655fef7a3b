// How the lines of a symbol fill the words of its record.
#ifndef SYMBOLS_SYMBOL_RECORD_H
#define SYMBOLS_SYMBOL_RECORD_H

#include <array>
#include <cstdint>

#include "stream/types.h"

namespace intake {

// Fields of one kind that follow one another on a line and in the record.
struct FieldRun {
    enum class Kind : uint8_t {
        kNone,      // no field: the end of the line's layout
        kIntegers,  // I10
        kReals,     // 1P,E14.7
        kName,      // A16, four words of the record, not turned for the file
        kChecked    // I10 that must be an integer and is kept nowhere
    };
    Kind kind = Kind::kNone;
    int count = 0;
    int word = 0;  // of the first field, from 1
};

constexpr FieldRun integers(int count, int word) {
    return {FieldRun::Kind::kIntegers, count, word};
}
constexpr FieldRun reals(int count, int word) { return {FieldRun::Kind::kReals, count, word}; }
constexpr FieldRun name(int word) { return {FieldRun::Kind::kName, 1, word}; }
constexpr FieldRun checked(int count) { return {FieldRun::Kind::kChecked, count, 0}; }

using LineLayout = std::array<FieldRun, 3>;

// The record of one symbol, in the program's byte order until it is turned for the file.
class SymbolRecord {
  public:
    static constexpr int kMostWords = 29;

    // Reads one line's fields. Later fields overwrite earlier ones where they share words.
    void read(const Line& line, const LineLayout& layout);
    // Turns the words that a line's layout filled, the name not at all.
    void turn(const LineLayout& layout, const Handle& file);
    // Turns the first words of the record, whatever they hold.
    void turnFirst(int count, const Handle& file);
    void copyWord(int from, int to) { word(to) = word(from); }

    const void* data() const { return words_.data(); }

  private:
    int32_t& word(int number) { return words_[static_cast<std::size_t>(number - 1)]; }
    void readField(FieldRun::Kind kind, const Line& line, std::size_t column, int number);

    std::array<int32_t, kMostWords> words_{};
};

}  // namespace intake

#endif
