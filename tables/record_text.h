// The text of one record, its lines joined with nothing between them.
#ifndef TABLES_RECORD_TEXT_H
#define TABLES_RECORD_TEXT_H

#include <span>
#include <string>
#include <string_view>

#include "stream/fields.h"
#include "stream/reader.h"

namespace intake {

class RecordText {
  public:
    // Reads so many lines, as many for each record. The text grows with the lines that are there.
    void readLines(int64_t count) {
        for (int64_t number = 0; number < count; ++number) {
            const std::size_t start = static_cast<std::size_t>(number) * Line::kLength;
            if (text_.size() == start) text_.resize(start + Line::kLength);
            IMPLIN(std::span(text_.data() + start, Line::kLength));
        }
    }
    // From a position on, counted from 1; what lies behind the text reads as nothing.
    std::string_view from(std::size_t position) const {
        return position <= text_.size() ? std::string_view(text_).substr(position - 1)
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
        const std::size_t lines = text_.size() / Line::kLength;
        const std::size_t line = (position - 1) / Line::kLength + 1;
        failedField(field(position, width), (position - 1) % Line::kLength + 1,
                    line < lines ? static_cast<int64_t>(lines - line) : 0);
    }

  private:
    std::string text_;
};

}  // namespace intake

#endif
