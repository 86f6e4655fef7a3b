// What is asked of the operating system, in plain terms. One file a system stands behind it
// (posix.cpp, windows.cpp); nothing else of ours knows which system it runs on.
//
// Paths and names are UTF-8. What fails leaves its reason in errno, by the numbers of <cerrno>, on
// every system. Calls that a signal interrupted are made again.
#ifndef SYSTEM_SYSTEM_H
#define SYSTEM_SYSTEM_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace os {

// An open file or folder.
using Handle = intptr_t;
inline constexpr Handle kNoHandle = -1;

enum class Opening {
    kRead,         // what is there, a link followed
    kReadWrite,    // what is there, and no link
    kMakeNew,      // nothing may be there: fails with EEXIST
    kMakeOrKeep,   // what is there, and no link, or a new one
    kMakeOrEmpty,  // the same, of no bytes
};

// Opens whatever has the name, without waiting for a pipe's other end. Only a regular file can be
// used further: see identify.
Handle openFile(const char* path, Opening how);

// Which regular file it is, and how it was changed last.
struct FileIdentity {
    uint64_t device = 0;
    uint64_t node = 0;
    int64_t madeSeconds = 0;  // both 0 where the file system does not keep it
    int64_t madeNanoseconds = 0;
    int64_t size = -1;
    int64_t changedSeconds = 0;
    int64_t changedNanoseconds = 0;
    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

// False with EINVAL for what is no regular file.
bool identify(Handle file, FileIdentity& identity);
bool identifyPath(const char* path, FileIdentity& identity);

// -1 on failure.
int64_t sizeOf(Handle file);
// Bytes read or written at a position, perhaps fewer than asked for; 0 at the end of a file, -1 on
// failure.
int64_t readAt(Handle file, int64_t position, std::span<std::byte> bytes);
int64_t writeAt(Handle file, int64_t position, std::span<const std::byte> bytes);
bool resize(Handle file, int64_t bytes);
// Returns when what was written to a file is on the disk, and will be there after a power cut.
bool sync(Handle file);
// The same for the names in a folder, where the system does not see to them by itself.
bool syncFolder(const char* path);
// The handle is gone, also where closing failed.
bool closeHandle(Handle handle);

// One holder of a lock among all processes; it ends with its process at the latest. Who reads and
// writes without a lock is not hindered. False from tryLock where another has it.
bool lock(Handle handle);
bool tryLock(Handle handle);
void unlock(Handle handle);
// A folder, for the sake of its lock; kNoHandle for anything else, and for a link unless followed.
Handle openFolder(const char* path, bool followLinks);

enum class Kind { kNothing, kFile, kFolder, kLink, kOther };

// What has a name, without following a link; kNothing with the reason in errno.
Kind kindOf(const char* path);
// The same for what a link leads to.
Kind kindBehind(const char* path);

bool makeFolder(const char* path);
// Only an empty one.
bool removeFolder(const char* path);
bool removeFile(const char* path);
// Takes the place of a file that is there, at once, also while someone has that open.
bool moveOver(const char* from, const char* to);
// False with EEXIST, and nothing moved, if something is there.
bool moveUnlessThere(const char* from, const char* to);

// The names in a folder in no order, "." and ".." not among them; false if it cannot be read.
bool namesIn(const char* folder, std::vector<std::string>& names);
// Removes a file, or a folder with all in it; links are not followed. Also true where nothing is.
bool removeTree(const char* path);
// Makes a folder of a name that was not there: the prefix and six characters. Empty on failure.
std::string makeUniqueFolder(const std::string& prefix);

// What parts the names of a path, and whether a path says where it begins.
bool isSeparator(char character);
bool isAbsolute(std::string_view path);

// Where files of no lasting worth go, without a separator at its end.
std::string temporaryFolder();
// Empty on failure.
std::string currentFolder();
int64_t processNumber();
// For this process and those that it starts. False if that could not be done.
bool setVariable(const char* name, const char* value);

// A companion by the name that the desktop platform has for it ("qxbase.DLL"), null if it cannot be
// loaded.
void* loadCompanion(const char* name);
// The program itself as a library.
void* thisProgram();
void freeLibrary(void* library);
// A box with a text; where there is no window, a line on standard error.
void messageBox(const char* text, const char* caption, uint32_t style);

}  // namespace os

#endif
