// The line on a terminal that tells how far an import is.
#ifndef APP_INTAKE_PROGRESS_LINE_H
#define APP_INTAKE_PROGRESS_LINE_H

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

namespace program {

class ProgressLine {
  public:
    // Shows nothing at all if it is not enabled. Gone when it goes out of scope.
    ProgressLine(std::ostream& stream, bool enabled, const std::string& file);
    ~ProgressLine() { clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    // Tells the section at hand ("" for the one before) and the bytes of the volume read so far.
    void show(std::string_view section, int64_t bytes);
    // Takes the line off the screen, as something else is to be printed.
    void clear();

  private:
    std::ostream& stream_;
    bool enabled_;
    int64_t total_ = 0;     // bytes of all volumes
    int64_t before_ = 0;    // bytes of the volumes before the one at hand
    int64_t position_ = 0;  // in the volume at hand
    std::string section_;
    std::string line_;  // on the screen
};

}  // namespace program

#endif
