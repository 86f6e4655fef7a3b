// Text files, line by line, and the texts that stand beside a dataset of any kind.
#ifndef DATASETS_SIDE_TEXTS_H
#define DATASETS_SIDE_TEXTS_H

#include <string>
#include <string_view>

#include "datasets/range.h"
#include "host/qxbase/channels.h"

namespace datasets {

class LineCursor {
  public:
    using Element = std::string;
    explicit LineCursor(std::string_view path) : channel_(Handle<aclose_>::opened(aopen_, path)) {}
    explicit operator bool() const { return bool(channel_); }
    bool next();
    const std::string& current() const { return line_; }

  private:
    Handle<aclose_> channel_;
    std::string line_;
};

// The lines of a file, of any length, without their line ends; a last line without one is a line.
// What they hold is bytes, in whatever encoding.
using Lines = Range<LineCursor>;
inline Lines linesOf(std::string_view path) { return Lines(path); }

enum class SideText : int32_t { projection = 28, log = 31, metadata = 104 };

// A text of the dataset at a path; the range is false where it has none. The metadata of an
// attribute table are its table's own (tables.h).
Lines sideText(std::string_view dataset, SideText which);

}  // namespace datasets

#endif
