#include "app/intake/batch/folder_walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace program {

namespace {

std::string joined(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (!path.empty() && !path.ends_with('/')) path += '/';
    return path.append(name);
}

char typeOf(DIR* listing, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN) return static_cast<char>(entry.d_type);
    struct stat state {};
    if (::fstatat(::dirfd(listing), entry.d_name, &state, AT_SYMLINK_NOFOLLOW) != 0) return DT_REG;
    return static_cast<char>(IFTODT(state.st_mode));
}

}  // namespace

FolderWalk::FolderWalk(const std::string& folder) : root_(folder) {}

void FolderWalk::leaveOut(dev_t device, ino_t inode) {
    leftOutDevice_ = device;
    leftOutInode_ = inode;
}

std::string FolderWalk::enter(const std::string& path, const std::string& place) {
    DIR* const listing = ::opendir(path.c_str());
    if (!listing) return std::strerror(errno);
    Frame frame;
    struct stat state {};
    ::fstat(::dirfd(listing), &state);
    frame.device = state.st_dev;
    frame.inode = state.st_ino;
    // A folder that is mounted once more within itself would have no end.
    const bool known = std::any_of(frames_.begin(), frames_.end(), [&](const Frame& outer) {
        return outer.device == frame.device && outer.inode == frame.inode;
    });
    std::string trouble;
    if (!known && (frame.device != leftOutDevice_ || frame.inode != leftOutInode_)) {
        frame.path = path;
        frame.place = place;
        for (;;) {
            errno = 0;
            const dirent* const entry = ::readdir(listing);
            if (!entry) {
                if (errno != 0) trouble = std::strerror(errno);
                break;
            }
            const std::string_view name = entry->d_name;
            if (name == "." || name == "..") continue;
            frame.letters += typeOf(listing, *entry);
            frame.names.push_back(
                {static_cast<uint32_t>(frame.letters.size()), static_cast<uint32_t>(name.size())});
            frame.letters += name;
        }
        std::sort(frame.names.begin(), frame.names.end(), [&](const Name& one, const Name& other) {
            return frame.name(one) < frame.name(other);
        });
        frames_.push_back(std::move(frame));
    }
    ::closedir(listing);
    return trouble;
}

bool FolderWalk::next(Entry& entry) {
    entry.trouble.clear();
    const auto enterOrTell = [&](const std::string& path, const std::string& place) {
        entry.trouble = enter(path, place);
        entry.path = path;
        entry.place = place;
        return !entry.trouble.empty();
    };
    if (!begun_) {
        begun_ = true;
        if (enterOrTell(root_, "")) return true;
    }
    while (!frames_.empty()) {
        Frame& frame = frames_.back();
        if (frame.next == frame.names.size()) {
            frames_.pop_back();
            continue;
        }
        const Name& name = frame.names[frame.next++];
        const char type = frame.letters[name.at - 1];
        entry.path = joined(frame.path, frame.name(name));
        entry.place = joined(frame.place, frame.name(name));
        if (type == DT_DIR) {
            if (enterOrTell(std::string(entry.path), std::string(entry.place))) return true;
            continue;
        }
        struct stat state {};
        if (type == DT_LNK && ::stat(entry.path.c_str(), &state) == 0 && S_ISDIR(state.st_mode)) {
            ++linksToFolders_;
            continue;
        }
        return true;
    }
    return false;
}

bool FolderWalk::isBeside(std::string_view name) const {
    if (frames_.empty()) return false;
    const Frame& frame = frames_.back();
    const auto found = std::lower_bound(
        frame.names.begin(), frame.names.end(), name,
        [&](const Name& one, std::string_view other) { return frame.name(one) < other; });
    return found != frame.names.end() && frame.name(*found) == name;
}

}  // namespace program
