// A gzip file as a run of bytes, with the checksums that libarchive passes over.
#ifndef CONTAINERS_GZIP_STREAM_H
#define CONTAINERS_GZIP_STREAM_H

#include <zlib.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace containers {

class GzipStream {
  public:
    // Reads from where the descriptor stands; it must stay open.
    GzipStream(int descriptor, std::string shownAs);
    ~GzipStream();
    GzipStream(const GzipStream&) = delete;
    GzipStream& operator=(const GzipStream&) = delete;

    // The next bytes, which last until the next call; empty at the end. Throws a Damage for a file
    // that is cut short, damaged or does not fit its checksum.
    std::string_view next();
    // Bytes of the compressed file that were used up.
    uint64_t consumed() const { return consumed_; }

  private:
    void expandMore();
    void refill();
    // Whether another gzip file follows in the same one; whatever else follows is no data.
    bool anotherFollows();

    int descriptor_;
    std::string shownAs_;
    z_stream stream_{};
    std::vector<char> input_;
    std::vector<char> output_;
    uint64_t consumed_ = 0;
    bool ended_ = false;
    std::string damage_;  // that was met, told once what stands before it has been given
};

}  // namespace containers

#endif
