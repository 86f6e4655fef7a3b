// One container, opened: the files that are in it, one after another.
#ifndef CONTAINERS_LEVEL_H
#define CONTAINERS_LEVEL_H

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "containers/descriptor.h"

struct archive;
struct archive_entry;

namespace containers {

class GzipStream;

// Whatever cannot be read as it should throws a Failure.
class Level {
  public:
    // The descriptor must stay open.
    Level(const Descriptor& file, std::string shownAs);
    ~Level();
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

    // Goes to the next regular file; false at the end.
    bool next();
    // Behind the last file: how many more bytes were expanded of what fills the container up, whose
    // checksum stands behind it; 0 at the end.
    std::size_t passOverRest();
    // Only the one file that was compressed, whose name is not known here.
    bool compressedOnly() const;
    const std::string& name() const { return name_; }
    bool encrypted() const;
    // The next bytes of the file at hand; 0 at its end.
    std::size_t read(std::span<char> bytes);
    // Bytes of the container that were used up for the file at hand.
    uint64_t consumed() const { return position() - begun_; }
    // Passing over a file expands it.
    bool passesByReading() const;
    // "gzip", "tar in gzip"
    std::string container() const;

  private:
    uint64_t position() const;
    [[noreturn]] void fail() const;

    struct Close {
        void operator()(archive* opened) const;
    };
    std::string shownAs_;
    std::unique_ptr<GzipStream> gzip_;
    std::string gzipFailure_;  // held until the library is out of the way
    bool noMemory_ = false;
    std::unique_ptr<archive, Close> archive_;
    archive_entry* entry_ = nullptr;
    std::string name_;
    uint64_t begun_ = 0;

    friend struct GzipFeed;
};

}  // namespace containers

#endif
