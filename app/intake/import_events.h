// An import as JSON Lines, for a program that shows it in its own way (docs/import-events.md).
#ifndef APP_INTAKE_IMPORT_EVENTS_H
#define APP_INTAKE_IMPORT_EVENTS_H

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "app/intake/progress_line.h"

namespace program {

class ImportEvents {
  public:
    ImportEvents(std::ostream& stream, bool enabled) : stream_(stream), enabled_(enabled) {}

    bool enabled() const { return enabled_; }
    void start(const std::string& file, const std::string& dataset, int64_t bytes);
    void progress(std::string_view section, const BytesRead& bytes);
    void message(int32_t level, std::string_view text);
    void end(int status, const std::string& kind, const std::string& content, double seconds);

  private:
    template <class Object>
    void print(const Object& object);

    std::ostream& stream_;
    bool enabled_;
};

}  // namespace program

#endif
