#include "app/intake/progress_line.h"

#include <cstdio>

#include "app/intake/console.h"

namespace program {

void ProgressLine::show(std::string_view section, const BytesRead& bytes) {
    if (!enabled_) return;
    char text[96];
    constexpr double kMegabyte = 1e6;
    std::snprintf(text, sizeof text, "%5.1f of %.1f MB  %s",
                  static_cast<double>(bytes.read()) / kMegabyte,
                  static_cast<double>(bytes.total()) / kMegabyte, shown(section).c_str());
    if (line_ == text) return;
    line_ = text;
    stream_ << "\r\033[K" << line_ << std::flush;
}

void ProgressLine::clear() {
    if (line_.empty()) return;
    stream_ << "\r\033[K" << std::flush;
    line_.clear();
}

}  // namespace program
