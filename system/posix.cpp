#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "system/system.h"

namespace os {

namespace {

template <class Call>
auto again(Call call) {
    decltype(call()) result;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    return result;
}

int descriptor(Handle handle) { return static_cast<int>(handle); }

int flagsOf(Opening how) {
    constexpr int kMake = O_RDWR | O_CREAT | O_NOFOLLOW;
    switch (how) {
        case Opening::kRead:
            return O_RDONLY;
        case Opening::kReadWrite:
            return O_RDWR | O_NOFOLLOW;
        case Opening::kMakeNew:
            return kMake | O_EXCL;
        case Opening::kMakeOrKeep:
            return kMake;
        case Opening::kMakeOrEmpty:
            return kMake | O_TRUNC;
    }
    return O_RDONLY;
}

bool identifyAt(int folder, const char* name, int flags, FileIdentity& identity) {
    struct statx found {};
    if (::statx(folder, name, flags, STATX_BASIC_STATS | STATX_BTIME, &found) != 0) return false;
    if (!S_ISREG(found.stx_mode)) {
        errno = EINVAL;
        return false;
    }
    const bool hasBirth = (found.stx_mask & STATX_BTIME) != 0;
    identity = {uint64_t{found.stx_dev_major} << 32 | found.stx_dev_minor,
                found.stx_ino,
                hasBirth ? found.stx_btime.tv_sec : 0,
                hasBirth ? found.stx_btime.tv_nsec : 0,
                static_cast<int64_t>(found.stx_size),
                found.stx_mtime.tv_sec,
                found.stx_mtime.tv_nsec};
    return true;
}

Kind kindIn(int result, const struct stat& found) {
    if (result != 0) return Kind::kNothing;
    if (S_ISREG(found.st_mode)) return Kind::kFile;
    if (S_ISDIR(found.st_mode)) return Kind::kFolder;
    return S_ISLNK(found.st_mode) ? Kind::kLink : Kind::kOther;
}

bool failedWith(const std::error_code& failure) {
    if (failure) errno = failure.value();
    return static_cast<bool>(failure);
}

}  // namespace

Handle openFile(const char* path, Opening how) {
    const int flags = flagsOf(how) | O_NONBLOCK | O_CLOEXEC;
    return again([&] { return ::open(path, flags, 0666); });
}

bool identify(Handle file, FileIdentity& identity) {
    return identifyAt(descriptor(file), "", AT_EMPTY_PATH, identity);
}

bool identifyPath(const char* path, FileIdentity& identity) {
    return identifyAt(AT_FDCWD, path, 0, identity);
}

int64_t sizeOf(Handle file) {
    struct stat found {};
    return ::fstat(descriptor(file), &found) == 0 ? int64_t{found.st_size} : -1;
}

int64_t readAt(Handle file, int64_t position, std::span<std::byte> bytes) {
    return again([&] { return ::pread(descriptor(file), bytes.data(), bytes.size(), position); });
}

int64_t writeAt(Handle file, int64_t position, std::span<const std::byte> bytes) {
    return again([&] { return ::pwrite(descriptor(file), bytes.data(), bytes.size(), position); });
}

bool resize(Handle file, int64_t bytes) {
    return again([&] { return ::ftruncate(descriptor(file), bytes); }) == 0;
}

// Some file systems have nothing to bring to a disk.
bool sync(Handle file) {
    return again([&] { return ::fsync(descriptor(file)); }) == 0 || errno == EINVAL;
}

bool syncFolder(const char* path) {
    const Handle folder = openFolder(path, true);
    if (folder == kNoHandle) return false;
    const bool done = sync(folder);
    const int failure = errno;
    closeHandle(folder);
    errno = failure;
    return done;
}

// The descriptor is gone even when close reports an interruption.
bool closeHandle(Handle handle) { return ::close(descriptor(handle)) == 0 || errno == EINTR; }

bool lock(Handle handle) {
    return again([&] { return ::flock(descriptor(handle), LOCK_EX); }) == 0;
}

bool tryLock(Handle handle) {
    return again([&] { return ::flock(descriptor(handle), LOCK_EX | LOCK_NB); }) == 0;
}

void unlock(Handle handle) { ::flock(descriptor(handle), LOCK_UN); }

Handle openFolder(const char* path, bool followLinks) {
    return ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | (followLinks ? 0 : O_NOFOLLOW));
}

Kind kindOf(const char* path) {
    struct stat found {};
    return kindIn(::lstat(path, &found), found);
}

Kind kindBehind(const char* path) {
    struct stat found {};
    return kindIn(::stat(path, &found), found);
}

bool makeFolder(const char* path) { return ::mkdir(path, 0777) == 0; }

bool removeFolder(const char* path) { return ::rmdir(path) == 0; }

bool removeFile(const char* path) { return ::unlink(path) == 0; }

bool moveOver(const char* from, const char* to) { return ::rename(from, to) == 0; }

bool moveUnlessThere(const char* from, const char* to) {
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    // A file system that cannot be asked so. Whoever makes something of this name between the two
    // calls loses it only if it is an empty folder or a file.
    if (kindOf(to) == Kind::kNothing && (errno == ENOENT || errno == ENOTDIR))
        return ::rename(from, to) == 0;
    errno = EEXIST;
    return false;
}

bool namesIn(const char* folder, std::vector<std::string>& names) {
    std::error_code failure;
    for (std::filesystem::directory_iterator each(folder, failure), end; !failure && each != end;
         each.increment(failure)) {
        names.push_back(each->path().filename().string());
    }
    return !failedWith(failure);
}

bool removeTree(const char* path) {
    std::error_code failure;
    std::filesystem::remove_all(path, failure);
    return !failedWith(failure);
}

std::string makeUniqueFolder(const std::string& prefix) {
    std::string path = prefix + "XXXXXX";
    return ::mkdtemp(path.data()) ? path : std::string();
}

bool isSeparator(char character) { return character == '/'; }

bool isAbsolute(std::string_view path) { return path.starts_with('/'); }

std::string temporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder && *folder ? folder : "/tmp";
}

std::string currentFolder() {
    char path[PATH_MAX];
    return ::getcwd(path, sizeof path) ? path : std::string();
}

int64_t processNumber() { return ::getpid(); }

bool setVariable(const char* name, const char* value) { return ::setenv(name, value, 1) == 0; }

// Here that is the shared library libqxbase.
void* loadCompanion(const char* name) {
    const std::string_view full(name);
    const std::string_view base = full.substr(0, full.rfind('.'));
    char file[256];
    const int length = std::snprintf(file, sizeof file, "lib%.*s.so.0",
                                     static_cast<int>(base.size()), base.data());
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof file) return nullptr;
    return ::dlopen(file, RTLD_NOW | RTLD_LOCAL);
}

void* thisProgram() { return ::dlopen(nullptr, RTLD_NOW | RTLD_LOCAL); }

void freeLibrary(void* library) { ::dlclose(library); }

void messageBox(const char* text, const char* caption, uint32_t) {
    std::fprintf(stderr, "%s: %s\n", caption, text);
}

}  // namespace os
