// Files out of archives and compressed files, for a program that reads one kind of text file.
#ifndef CONTAINERS_ARCHIVE_H
#define CONTAINERS_ARCHIVE_H

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace containers {

// What ended the expansion, in words for the user that name the file.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// ... by what is in the file: it is cut short, damaged or encrypted.
struct Damage : Failure {
    using Failure::Failure;
    bool inWanted = false;  // a file of the kind that is looked for begins in it, or may
};

struct Limits {
    uint64_t mostBytes = uint64_t{64} << 30;  // of everything that is expanded together
    uint64_t mostRatio = 1000;                // of what is expanded to what was read for it
};

struct Request {
    std::string path;     // a regular file that begins as a container (magic.h)
    std::string shownAs;  // its name in messages
    std::string wanted;   // which file of those that are in it; "" for the only one
    std::string folder;   // of the caller alone: the volumes are made in it, and nothing else
    Limits limits;
    bool volumesBeside = true;  // whether those of a compressed volume may be files beside it
    // Whether a file that starts so (its first 512 bytes, or all of a shorter one) is of the kind
    // that is looked for, and whether it says so itself: such a one is never a later volume.
    bool (*wantedStart)(std::string_view start) = nullptr;
    bool (*certainStart)(std::string_view start) = nullptr;
};

struct Volume {
    std::string name;  // as it is stored, a folder in front of it included
    std::string path;  // where it was expanded to
    uint64_t bytes = 0;
};

struct Content {
    std::string name;
    std::string start;  // its first bytes; empty where it is encrypted
    bool encrypted = false;
};

struct Expansion {
    std::string container;  // "gzip", "tar in gzip", "gzip in zip"
    // The file and its further volumes; empty where the choice is the user's, or there is none.
    std::vector<Volume> volumes;
    // The name of a first volume without its last two digits, if it ends in two. The paths of the
    // volumes end in the same digits.
    std::string stem;
    std::vector<Content> choice;  // the files of the kind that is looked for, if there are several
    std::vector<Content> others;  // what is in it instead, if there is none: the first ones
};

// Names that are stored in a container are compared and shown, and never used as paths. What cannot
// be read as it should (cut short, damaged, encrypted, larger than the limits) throws a Failure;
// the caller removes the folder then as always.
class Archive {
  public:
    virtual Expansion expand(const Request& request) const = 0;

  protected:
    ~Archive() = default;
};

}  // namespace containers

#endif
