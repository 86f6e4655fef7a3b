// A file of the operating system, closed when it goes out of scope.
#ifndef COMPANIONS_STORE_FILE_H
#define COMPANIONS_STORE_FILE_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "system/system.h"

namespace store {

class File {
  public:
    File() = default;
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    ~File();

    enum class Creation { kAnew, kMustBeNew, kKeep };

    // Open a file; on failure the result is not open and errno tells why. Only regular files
    // are opened. A path that names a symbolic link is followed for reading only. What the machine
    // fails to do, here and below, is noted (host/qxbase/failures.h); a name where no such file is
    // or can be is left to the caller, and noted as refused where one was to be made.
    static File read(const std::string& path);
    static File readWrite(const std::string& path);
    static File create(const std::string& path, Creation creation);

    bool isOpen() const { return handle_ != os::kNoHandle; }
    const std::string& path() const { return path_; }
    int64_t size() const;
    // What it was when it was opened, which costs nothing; -1 for one that create made.
    int64_t sizeWhenOpened() const { return opened_.size; }
    // Which file it is and how it was changed last: the same for a file that was left alone.
    struct Identity : os::FileIdentity {
        bool known() const { return size >= 0; }
        // Whether it is the same file, changed or not.
        bool isSameFile(const Identity& other) const {
            return known() && other.known() && device == other.device && node == other.node &&
                   madeSeconds == other.madeSeconds && madeNanoseconds == other.madeNanoseconds;
        }
        friend bool operator==(const Identity&, const Identity&) = default;
    };
    Identity identity() const;
    const Identity& identityWhenOpened() const { return opened_; }
    // The same for a path without opening it; not known for what read would not open.
    static Identity identityOf(const std::string& path);

    // Bytes read from a position: fewer than asked for at the end of the file, -1 on failure.
    int64_t readAt(int64_t position, std::span<std::byte> bytes) const;
    // Writes all bytes at a position.
    bool writeAt(int64_t position, std::span<const std::byte> bytes);
    bool truncate(int64_t size);
    // Brings what was written, and the name of a new file, to the disk, where that is wished
    // (durable.h); close does so, too.
    bool settle();
    // What is written is of no lasting worth.
    void keepNothing() { changed_ = made_ = false, keepsNothing_ = true; }
    // Waits until no other process has the file locked, and locks it until it is closed or
    // unlocked.
    bool lock();
    void unlock();
    // False if what was written may not have reached the disk. A file that is not open has nothing.
    bool close();

  private:
    // Whatever has no bytes at a position (a directory, a pipe, a device) is no file, and is not
    // waited for.
    void refuseIrregular();
    void noteUnlessOpen() const;

    os::Handle handle_ = os::kNoHandle;
    std::string path_;
    Identity opened_;
    bool made_ = false;     // its name is not on the disk yet
    bool changed_ = false;  // its bytes are not
    bool keepsNothing_ = false;
};

// Makes a directory; false, and noted as refused, if something is there already or the name can be
// none.
bool makeDirectory(const std::string& path);
// Makes a directory unless it is there. Whatever hinders that is noted, also a name that cannot be
// one.
bool haveDirectory(const std::string& path);
// False if there is no such file, or it cannot be removed.
bool removeFile(const std::string& path);
// The same for what may stay, without a note: a file, an empty directory.
void dropFile(const std::string& path);
void dropDirectory(const std::string& path);
// Puts a file in the place of another at once. False, and the old file stays, if that failed.
bool replaceFile(const std::string& path, std::span<const std::byte> bytes);
bool exists(const std::string& path);
bool isLink(const std::string& path);
// A symbolic link is no directory: what is planted under a dataset's name leads nowhere.
bool isDirectory(const std::string& path);
// The same for a directory that the user named, who may use links.
bool leadsToDirectory(const std::string& path);

}  // namespace store

#endif
