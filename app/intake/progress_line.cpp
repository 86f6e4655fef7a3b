#include "app/intake/progress_line.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "app/intake/console.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"

namespace program {

namespace {

int64_t bytesOfVolumes(const std::string& file) {
    constexpr int32_t kReader = 2;
    int64_t total = 0;
    if (file.size() > qx::Name::kLength) return total;
    qx::Name volume(file);
    for (int32_t status = 0; status == 0; qx::call(iename_, volume, kReader, status)) {
        std::error_code failed;
        const auto bytes = std::filesystem::file_size(std::string(volume.view()), failed);
        if (!failed) total += static_cast<int64_t>(bytes);
    }
    return total;
}

}  // namespace

ProgressLine::ProgressLine(std::ostream& stream, bool enabled, const std::string& file)
    : stream_(stream), enabled_(enabled), total_(enabled ? bytesOfVolumes(file) : 0) {}

void ProgressLine::show(std::string_view section, int64_t bytes) {
    if (!enabled_) return;
    if (!section.empty()) section_ = section;
    // The count begins anew with each volume.
    if (bytes < position_) before_ += position_;
    position_ = bytes;
    char text[96];
    constexpr double kMegabyte = 1e6;
    const int64_t read = std::min(before_ + position_, total_);
    std::snprintf(text, sizeof text, "%5.1f of %.1f MB  %s", static_cast<double>(read) / kMegabyte,
                  static_cast<double>(total_) / kMegabyte, shown(section_).c_str());
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
