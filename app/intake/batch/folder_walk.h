// All files of a folder and of those in it, in an order that is always the same.
#ifndef APP_INTAKE_BATCH_FOLDER_WALK_H
#define APP_INTAKE_BATCH_FOLDER_WALK_H

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace program {

class FolderWalk {
  public:
    // Links to folders are not followed, but for the folder itself.
    explicit FolderWalk(const std::string& folder);

    struct Entry {
        std::string path;
        std::string place;    // its path below the folder
        std::string trouble;  // why a folder cannot be searched; empty for a file
    };
    // The next one that is no folder; false at the end.
    bool next(Entry& entry);
    // Whether the file that next gave has a neighbour of some name.
    bool isBeside(std::string_view name) const;
    // A folder is passed over.
    void leaveOut(dev_t device, ino_t inode);
    uint64_t linksToFolders() const { return linksToFolders_; }

  private:
    struct Name {
        uint32_t at;
        uint32_t size;
    };
    struct Frame {
        std::string path;
        std::string place;
        dev_t device = 0;
        ino_t inode = 0;
        std::string letters;  // of all names, each behind its type
        std::vector<Name> names;
        std::size_t next = 0;

        std::string_view name(const Name& name) const {
            return std::string_view(letters).substr(name.at, name.size);
        }
    };
    // Why it cannot be entered; "" if it could, or is passed over.
    std::string enter(const std::string& path, const std::string& place);

    std::vector<Frame> frames_;
    std::string trouble_;
    dev_t leftOutDevice_ = 0;
    ino_t leftOutInode_ = 0;
    uint64_t linksToFolders_ = 0;
    std::string root_;
    bool begun_ = false;
};

}  // namespace program

#endif
