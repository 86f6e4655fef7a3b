// The line on a terminal that tells how far an import is.
#ifndef APP_INTAKE_PROGRESS_LINE_H
#define APP_INTAKE_PROGRESS_LINE_H

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace program {

// Bytes read of all volumes, out of those of the one at hand.
class BytesRead {
  public:
    explicit BytesRead(int64_t total) : total_(total) {}
    // The count of a volume, which begins anew with each.
    void of(int64_t volume) {
        if (volume < position_) before_ += position_;
        position_ = volume;
    }
    int64_t total() const { return total_; }
    int64_t read() const { return before_ + position_ < total_ ? before_ + position_ : total_; }

  private:
    int64_t total_;
    int64_t before_ = 0;    // of the volumes before the one at hand
    int64_t position_ = 0;  // in the volume at hand
};

class ProgressLine {
  public:
    // Shows nothing at all if it is not enabled. Gone when it goes out of scope.
    ProgressLine(std::ostream& stream, bool enabled) : stream_(stream), enabled_(enabled) {}
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void show(std::string_view section, const BytesRead& bytes);
    // Takes the line off the screen, as something else is to be printed.
    void clear();

  private:
    std::ostream& stream_;
    bool enabled_;
    std::string line_;  // on the screen
};

}  // namespace program

#endif
