// Folders: their locks, what is in them, and moves that take the place of nothing.
#ifndef COMPANIONS_STORE_FOLDERS_H
#define COMPANIONS_STORE_FOLDERS_H

#include <string>
#include <vector>

namespace store {

// The lock on a folder, for as long as it lives. It is the kernel's, and ends with its process.
class FolderLock {
  public:
    FolderLock() = default;
    // Waits for it. A symbolic link is followed: the folder is the user's.
    static FolderLock wait(const std::string& folder);
    // Not held if another process has it, or the path is no folder; a link is none.
    static FolderLock tryNow(const std::string& folder);
    FolderLock(FolderLock&& other) noexcept;
    FolderLock& operator=(FolderLock&& other) noexcept;
    ~FolderLock();

    bool held() const { return descriptor_ >= 0; }

  private:
    int descriptor_ = -1;
};

// The names in a folder by their bytes, "." and ".." not among them; none if it cannot be read.
std::vector<std::string> namesIn(const std::string& folder);

// Makes a folder of a name that was not there: the prefix and six characters. Its path, empty on
// failure, which is noted.
std::string makeUniqueFolder(const std::string& prefix);

// Moves a file or folder within a file system; to is not there. False, and nothing moved, with
// errno EEXIST if it is, without a note; any other failure is noted.
bool moveUnlessThere(const std::string& from, const std::string& to);
// The same in the place of a file that is there.
bool moveOver(const std::string& from, const std::string& to);

// Removes a file, or a folder with all in it; links are not followed. False, and noted, if
// something stays.
bool removeTree(const std::string& path);

}  // namespace store

#endif
