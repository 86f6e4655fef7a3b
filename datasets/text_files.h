// Text files, line by line.
#ifndef DATASETS_TEXT_FILES_H
#define DATASETS_TEXT_FILES_H

#include <string>
#include <string_view>

#include "datasets/range.h"
#include "host/qxbase/channels.h"

namespace datasets {

class LineCursor {
  public:
    using Element = std::string;
    LineCursor() = default;
    explicit LineCursor(std::string_view path);
    explicit operator bool() const { return bool(handle_); }
    bool next();
    const std::string& current() const { return line_; }

  private:
    Handle<aclose_> handle_;
    std::string line_;
};

// The lines of a text file as they are stored, of any length and without their ends.
inline Range<LineCursor> textLines(std::string_view path) { return LineCursor(path); }

// Whether the front of a file is lines of text, in whatever encoding, or nothing at all.
bool looksLikeText(const std::string& path);

}  // namespace datasets

#endif
