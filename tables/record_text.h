// The text of one record, its lines joined with nothing between them.
#ifndef TABLES_RECORD_TEXT_H
#define TABLES_RECORD_TEXT_H

#include <span>
#include <string>
#include <string_view>

#include "stream/fields.h"
#include "stream/reader.h"
#include "stream/whole_lines.h"

namespace intake {

class RecordText {
  public:
    // Reads so many lines, as many for each record. The text grows with the lines that are there.
    void readLines(int64_t count) {
        for (int64_t number = 0; number < count; ++number) {
            const std::size_t start = static_cast<std::size_t>(number) * Line::kLength;
            if (length_ == start) {
                length_ += Line::kLength;
                text_.resize(length_ + kBehindLine);
            }
            char* const line = text_.data() + start;
            if (!takeWholeLine(line)) IMPLIN(std::span(line, Line::kLength));
        }
    }
    // The whole text, with kBehindLine more characters to look at.
    const char* data() const { return text_.data(); }
    // From a position on, counted from 1; what lies behind the text reads as nothing.
    std::string_view from(std::size_t position) const {
        return position <= length_ ? std::string_view(text_.data(), length_).substr(position - 1)
                                   : std::string_view();
    }
    std::string_view field(std::size_t position, std::size_t width) const {
        return from(position).substr(0, width);
    }
    double integer(std::size_t position, std::size_t width) const {
        int64_t value = 0;
        if (!readInteger(field(position, width), value)) fail(position, width);
        return static_cast<double>(value);
    }
    double real(std::size_t position, std::size_t width, int decimals, int scale) const {
        double value = 0;
        if (!readReal(field(position, width), decimals, scale, value)) fail(position, width);
        return value;
    }
    // Ends the import, naming the line and the columns where the field begins.
    [[noreturn]] void fail(std::size_t position, std::size_t width) const {
        const std::size_t lines = length_ / Line::kLength;
        const std::size_t line = (position - 1) / Line::kLength + 1;
        failedField(field(position, width), (position - 1) % Line::kLength + 1,
                    line < lines ? static_cast<int64_t>(lines - line) : 0);
    }

  private:
    std::string text_;
    std::size_t length_ = 0;
};

}  // namespace intake

#endif
