#include "symbols/symbol_record.h"

#include <bit>

#include "host/qxbase.h"
#include "stream/fields.h"

namespace intake {

namespace {

using Kind = FieldRun::Kind;

constexpr int kRealDecimals = 7;
constexpr int32_t kNameLength = 16;

constexpr std::size_t columnsOf(Kind kind) {
    return kind == Kind::kReals ? 14 : kind == Kind::kName ? 16 : 10;
}

}  // namespace

void SymbolRecord::readField(Kind kind, const Line& line, std::size_t column, int number) {
    const std::string_view text = line.columns(column, column + columnsOf(kind) - 1);
    if (kind == Kind::kIntegers) {
        word(number) = integerField<int32_t>(text, column);
    } else if (kind == Kind::kChecked) {
        integerField<int32_t>(text, column);
    } else if (kind == Kind::kReals) {
        word(number) =
            std::bit_cast<int32_t>(static_cast<float>(realField(text, column, kRealDecimals)));
    } else if (kind == Kind::kName) {
        chrstr_(text.data(), &kNameLength, reinterpret_cast<char*>(&word(number)), &kNameLength,
                static_cast<int32_t>(text.size()));
    }
}

void SymbolRecord::read(const Line& line, const LineLayout& layout) {
    std::size_t column = 1;
    for (const FieldRun& run : layout) {
        for (int index = 0; index < run.count; ++index) {
            readField(run.kind, line, column, run.word + index);
            column += columnsOf(run.kind);
        }
    }
}

void SymbolRecord::turn(const LineLayout& layout, const Handle& file) {
    for (const FieldRun& run : layout) {
        if (run.kind == Kind::kIntegers || run.kind == Kind::kReals) {
            // Four bytes turn alike, whatever they hold.
            call(swi4fn_, &word(run.word), run.count, 2, file);
        }
    }
}

void SymbolRecord::turnFirst(int count, const Handle& file) {
    call(swi4fn_, words_, count, 2, file);
}

}  // namespace intake
