#include "app/intake/batch/finished.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace program {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const std::string& path, int error) {
    throw std::runtime_error(path + ": " + std::strerror(error));
}

int syncOne(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    // What somebody has taken away meanwhile is no longer ours.
    if (file < 0) return errno == ENOENT ? 0 : errno;
    const int error = ::fsync(file) == 0 ? 0 : errno;
    ::close(file);
    return error;
}

}  // namespace

void putInPlace(const std::string& from, const std::string& to, const std::string& aside,
                bool replace) {
    std::error_code error;
    fs::create_directories(fs::path(to).parent_path(), error);
    if (error) fail(fs::path(to).parent_path().string(), error.value());
    const fs::file_type there = fs::symlink_status(to, error).type();
    if (there != fs::file_type::not_found) {
        if (!replace) fail(to, EEXIST);
        if (there == fs::file_type::directory) {
            fs::rename(to, aside, error);
            if (error) fail(to, error.value());
        }
    }
    if (std::rename(from.c_str(), to.c_str()) != 0) {
        const int reason = errno;
        if (there == fs::file_type::directory) fs::rename(aside, to, error);
        fail(to, reason);
    }
    if (there == fs::file_type::directory) fs::remove_all(aside, error);
}

uint64_t bytesOf(const std::string& path) {
    std::error_code error;
    if (!fs::is_directory(path, error)) return fs::file_size(path, error);
    uint64_t total = 0;
    for (fs::recursive_directory_iterator each(path, error), end; !error && each != end;
         each.increment(error)) {
        if (each->is_regular_file(error)) total += each->file_size(error);
    }
    return total;
}

int syncPath(const std::string& folder, const std::string& name) {
    const std::string path = folder + '/' + name;
    int failed = syncOne(path);
    std::error_code error;
    for (fs::recursive_directory_iterator each(path, error), end; !error && each != end;
         each.increment(error)) {
        if (const int reason = syncOne(each->path().string()); reason != 0) failed = reason;
    }
    for (std::string above = name; above.find('/') != std::string::npos;) {
        above.erase(above.rfind('/'));
        if (const int reason = syncOne(folder + '/' + above); reason != 0) failed = reason;
    }
    if (const int reason = syncOne(folder); reason != 0) failed = reason;
    return failed;
}

}  // namespace program
