#include <filesystem>
#include <map>

#include "app/intake/show/show.h"
#include "app/intake/utf8.h"
#include "datasets/symbol_sets.h"

namespace program {

namespace {

namespace fs = std::filesystem;

using Sizes = std::map<std::string, std::uintmax_t>;

void addFile(const fs::path& file, const std::string& name, Sizes& sizes) {
    std::error_code failed;
    const auto bytes = fs::file_size(file, failed);
    if (!failed) sizes[name] = bytes;
}

// Links are not followed: what they lead to belongs to somebody else.
void addFolder(const fs::path& folder, Sizes& sizes) {
    std::error_code failed;
    for (fs::recursive_directory_iterator each(folder, failed), end; !failed && each != end;
         each.increment(failed)) {
        if (each->is_symlink(failed) || !each->is_regular_file(failed)) continue;
        addFile(each->path(), each->path().lexically_relative(folder).string(), sizes);
    }
}

}  // namespace

Description filesOf(const Dataset& dataset) {
    const fs::path path =
        dataset.kind == "Font File" ? datasets::fontFile(dataset.path) : dataset.path;
    Sizes sizes;
    std::error_code failed;
    if (fs::is_directory(path, failed)) {
        addFolder(path, sizes);
    } else {
        addFile(path, path.filename().string(), sizes);
    }
    Description files = Description::array();
    for (const auto& [name, bytes] : sizes) {
        files.push_back({{"name", toUtf8(name)}, {"bytes", bytes}});
    }
    return files;
}

}  // namespace program
