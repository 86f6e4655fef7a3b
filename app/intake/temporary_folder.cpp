#include "app/intake/temporary_folder.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <string_view>

namespace program {

namespace {

// Texts of a fixed size: a way out for want of memory reads them too.
struct Entry {
    bool used = false;
    std::array<char, 256> path{};
};
std::array<Entry, 8> entries;
std::mutex entriesInUse;

// Removes what is in an open folder, and closes it. Links are removed, not followed.
void empty(int folder) noexcept {
    DIR* listing = ::fdopendir(folder);
    if (!listing) {
        ::close(folder);
        return;
    }
    while (const dirent* entry = ::readdir(listing)) {
        const std::string_view name = entry->d_name;
        if (name == "." || name == "..") continue;
        if (entry->d_type != DT_DIR && ::unlinkat(folder, entry->d_name, 0) == 0) continue;
        const int inner =
            ::openat(folder, entry->d_name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (inner < 0) continue;
        empty(inner);
        ::unlinkat(folder, entry->d_name, AT_REMOVEDIR);
    }
    ::closedir(listing);
}

bool emptyAt(const char* path) noexcept {
    const int folder = ::open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0) return false;
    empty(folder);
    return true;
}

void remove(const char* path) noexcept {
    // Another thread or process may still make a file in it.
    for (int tries = 0; tries < 100; ++tries) {
        if (!emptyAt(path) || ::rmdir(path) == 0) return;
    }
}

}  // namespace

TemporaryFolder::TemporaryFolder(const std::string& parent) : path_(parent) {
    if (path_.empty()) {
        const char* const chosen = std::getenv("TMPDIR");
        path_ = chosen && *chosen ? chosen : "/tmp";
    }
    path_ += "/intake.XXXXXX";
    const std::lock_guard lock(entriesInUse);
    for (place_ = 0; place_ < entries.size() && entries[place_].used;) ++place_;
    // The paths of files in it have to fit the buffers of the library.
    constexpr std::size_t kLongest = 200;
    if (path_.size() > kLongest || place_ == entries.size()) {
        throw std::runtime_error("the path of the folder for temporary files is too long: " +
                                 path_ + "; TMPDIR names another one");
    }
    if (!::mkdtemp(path_.data())) {
        throw std::runtime_error("could not make the folder for temporary files " + path_ + ": " +
                                 std::strerror(errno) + "; TMPDIR names another place");
    }
    path_.copy(entries[place_].path.data(), path_.size());
    entries[place_].path[path_.size()] = '\0';
    entries[place_].used = true;
}

TemporaryFolder::~TemporaryFolder() {
    const std::lock_guard lock(entriesInUse);
    remove(path_.c_str());
    entries[place_].used = false;
}

void emptyFolder(const std::string& path) noexcept { emptyAt(path.c_str()); }

void removeTemporaryFolders() noexcept {
    // Without the lock: the thread that holds it may be the one that ends.
    for (const Entry& entry : entries) {
        if (entry.used) remove(entry.path.data());
    }
}

}  // namespace program
