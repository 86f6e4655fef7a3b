#include "app/intake/workspace/sizes.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <filesystem>

namespace program {

namespace fs = std::filesystem;

namespace {

Size ofFile(const fs::path& path) {
    struct stat found {};
    if (::lstat(path.c_str(), &found) != 0 || !S_ISREG(found.st_mode)) return {};
    return {static_cast<uint64_t>(found.st_size), found.st_mtim.tv_sec};
}

}  // namespace

void Size::add(const Size& other) {
    bytes += other.bytes;
    changed = std::max(changed, other.changed);
}

WorkspaceSizes::WorkspaceSizes(const std::string& workspace) {
    std::error_code failed;
    const fs::path info = fs::path(workspace) / "info";
    for (fs::directory_iterator each(info, failed), end; !failed && each != end;
         each.increment(failed)) {
        const std::string name = each->path().filename().string();
        if (name.starts_with("table")) {
            tables_[name.substr(0, name.find('.'))].add(ofFile(each->path()));
        }
    }
}

Size WorkspaceSizes::of(const datasets::Table& table) const {
    const std::string name = fs::path(table.metadataPath()).stem().string();
    const auto found = tables_.find(name);
    return found == tables_.end() ? Size() : found->second;
}

Size WorkspaceSizes::of(const std::string& dataset) const {
    std::error_code failed;
    Size size = ofFile(dataset);
    if (!fs::is_symlink(dataset, failed)) {
        for (fs::directory_iterator each(dataset, failed), end; !failed && each != end;
             each.increment(failed)) {
            size.add(ofFile(each->path()));
        }
    }
    for (const auto& place : datasets::tablesOf(dataset)) {
        if (const auto table = datasets::table(place)) size.add(of(table));
    }
    return size;
}

std::string bytesText(uint64_t bytes) {
    constexpr const char* kUnits[] = {"bytes", "kB", "MB", "GB", "TB"};
    auto value = static_cast<double>(bytes);
    std::size_t unit = 0;
    for (; value >= 1000 && unit + 1 < std::size(kUnits); ++unit) value /= 1000;
    char text[32];
    std::snprintf(text, sizeof text, "%.*f %s", unit == 0 || value >= 100 ? 0 : 1, value,
                  kUnits[unit]);
    return text;
}

std::string timeText(int64_t seconds) {
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    char text[32];
    if (!::localtime_r(&time, &parts)) return "?";
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &parts)};
}

}  // namespace program
