#include "app/intake/batch/inputs.h"

#include <fnmatch.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>

#include "app/intake/batch/stable_hash.h"
#include "containers/volume_names.h"

namespace program {

namespace {

constexpr std::string_view kArchives[] = {".zip", ".tar", ".tgz", ".tbz2", ".txz", ".tzst"};

std::string lower(std::string_view text) {
    std::string result(text);
    for (char& each : result) {
        each = static_cast<char>(std::tolower(static_cast<unsigned char>(each)));
    }
    return result;
}

// The names that interchange files and archives of them usually have.
bool isUsual(std::string_view name) {
    const std::string plain = lower(containers::withoutCompression(name));
    if (plain.size() > 4 && plain[plain.size() - 4] == '.' && plain[plain.size() - 3] == 'e' &&
        containers::endsInTwoDigits(plain)) {
        return true;
    }
    return std::any_of(std::begin(kArchives), std::end(kArchives),
                       [&](std::string_view ending) { return plain.ends_with(ending); });
}

std::string_view lastName(std::string_view path) { return path.substr(path.rfind('/') + 1); }

const char* whatIsNoFile(mode_t mode) {
    if (S_ISDIR(mode)) return "is a folder";
    if (S_ISFIFO(mode)) return "is a pipe, not a file";
    if (S_ISSOCK(mode)) return "is a socket, not a file";
    return "is a device, not a file";
}

int64_t modifiedAt(const struct stat& state) {
    return int64_t{state.st_mtim.tv_sec} * 1'000'000'000 + state.st_mtim.tv_nsec;
}

bool isFolder(const std::string& path) {
    struct stat state {};
    return ::stat(path.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

bool isList(const std::string& given) { return given.starts_with('@') || given == "-"; }
std::string listOf(const std::string& given) { return given == "-" ? given : given.substr(1); }

// What lies on the disk of ARCHIVE::NAME.
std::string onDisk(const std::string& path) {
    struct stat state {};
    if (::lstat(path.c_str(), &state) == 0) return path;
    const std::size_t colons = path.find("::");
    return colons == std::string::npos ? path : path.substr(0, colons);
}

// The same file has one path, however its folder was given.
std::string tidied(std::string path) {
    while (path.starts_with("./") && path.size() > 2) {
        path.erase(0, 2);
        while (path.starts_with('/') && path.size() > 1) path.erase(0, 1);
    }
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return path;
}

}  // namespace

Inputs::Inputs(const BatchOptions& options, Places& places) : options_(options), places_(places) {
    // A list that is not there is told before anything is made.
    for (const std::string& given : options.inputs) {
        if (isList(given)) PathList(listOf(given));
    }
}

bool Inputs::isMeant(const std::string& place) const {
    const std::string name(lastName(place));
    if (options_.include.empty()) return isUsual(name);
    return std::any_of(options_.include.begin(), options_.include.end(), [&](const auto& glob) {
        const bool whole = glob.find('/') != std::string::npos;
        return ::fnmatch(glob.c_str(), (whole ? place : name).c_str(), FNM_CASEFOLD) == 0;
    });
}

void Inputs::open(const std::string& given) {
    walk_ = std::make_unique<FolderWalk>(given);
    struct stat state {};
    if (::stat(options_.folder.c_str(), &state) == 0) walk_->leaveOut(state.st_dev, state.st_ino);
}

// The path is known, and its place below the folder where it was found.
Inputs::Step Inputs::take(Input& input, const std::string& place, const IsBeside& isBeside) {
    // Numbers of places are the same in all shards.
    input.place = places_.take(place);
    if (stableHash(place) % options_.shards != options_.shard) return Step::kNone;
    input.stamp = {};
    input.mayFollow = false;
    if (!input.trouble.empty()) return Step::kInput;
    struct stat state {};
    if (::stat(onDisk(input.path).c_str(), &state) != 0) {
        input.trouble = std::strerror(errno);
        return Step::kInput;
    }
    if (!S_ISREG(state.st_mode)) {
        input.trouble = whatIsNoFile(state.st_mode);
        return Step::kInput;
    }
    addStamp(input.stamp, static_cast<uint64_t>(state.st_size), modifiedAt(state));
    input.mayFollow = mayFollow(lastName(input.path), isBeside);
    if (!mayBeFollowed(lastName(input.path), isBeside)) return Step::kInput;
    for (const std::string& volume : furtherVolumes(input.path)) {
        if (::stat(volume.c_str(), &state) != 0) continue;
        addStamp(input.stamp, static_cast<uint64_t>(state.st_size), modifiedAt(state));
    }
    return Step::kInput;
}

Inputs::Step Inputs::takeNamed(Input& input, std::string place) {
    const std::string folder =
        input.path.substr(0, input.path.size() - lastName(input.path).size());
    return take(input, place, [&](const std::string& name) {
        return ::access((folder + name).c_str(), F_OK) == 0;
    });
}

Inputs::Step Inputs::next(Input& input) {
    input.trouble.clear();
    if (walk_) {
        FolderWalk::Entry entry;
        if (!walk_->next(entry)) {
            linksToFolders_ += walk_->linksToFolders();
            walk_.reset();
            return Step::kNone;
        }
        if (entry.trouble.empty() && !isMeant(entry.place)) {
            ++otherNames_;
            return Step::kNone;
        }
        input.path = entry.path;
        input.trouble = entry.trouble;
        return take(input, entry.place.empty() ? placeBelow(entry.path) : entry.place,
                    [&](const std::string& name) { return walk_->isBeside(name); });
    }
    if (list_) {
        switch (list_->next(input.path, false)) {
            case PathList::Step::kWait:
                return Step::kWait;
            case PathList::Step::kEnd:
                list_.reset();
                return Step::kNone;
            case PathList::Step::kPath:
                break;
        }
        input.path = tidied(input.path);
        // Nothing says below which folder it was found: the place is its whole path.
        return takeNamed(input, placeBelow(input.path));
    }
    if (given_ == options_.inputs.size()) return Step::kEnd;
    const std::string& given = options_.inputs[given_++];
    if (isList(given)) {
        list_ = std::make_unique<PathList>(listOf(given));
        return Step::kNone;
    }
    input.path = tidied(given);
    if (isFolder(input.path)) {
        open(input.path);
        return Step::kNone;
    }
    return takeNamed(input, placeBelow(lastName(input.path)));
}

}  // namespace program
