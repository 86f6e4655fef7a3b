#include "containers/gzip_stream.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>

#include "containers/archive.h"

namespace containers {

namespace {

constexpr std::size_t kBufferBytes = 256 * 1024;
constexpr int kGzipOnly = 16 + MAX_WBITS;

}  // namespace

GzipStream::GzipStream(int descriptor, std::string shownAs)
    : descriptor_(descriptor),
      shownAs_(std::move(shownAs)),
      input_(kBufferBytes),
      output_(kBufferBytes) {
    if (inflateInit2(&stream_, kGzipOnly) != Z_OK) throw std::bad_alloc();
}

GzipStream::~GzipStream() { inflateEnd(&stream_); }

void GzipStream::refill() {
    if (stream_.avail_in != 0) std::memmove(input_.data(), stream_.next_in, stream_.avail_in);
    ssize_t count;
    do {
        count =
            ::read(descriptor_, input_.data() + stream_.avail_in, input_.size() - stream_.avail_in);
    } while (count < 0 && errno == EINTR);
    if (count < 0) throw Failure("could not read " + shownAs_ + ": " + std::strerror(errno));
    stream_.next_in = reinterpret_cast<Bytef*>(input_.data());
    stream_.avail_in += static_cast<uInt>(count);
}

bool GzipStream::anotherFollows() {
    if (stream_.avail_in < 2) refill();
    return stream_.avail_in >= 2 && stream_.next_in[0] == 0x1f && stream_.next_in[1] == 0x8b;
}

std::string_view GzipStream::next() {
    stream_.next_out = reinterpret_cast<Bytef*>(output_.data());
    stream_.avail_out = static_cast<uInt>(output_.size());
    while (!ended_ && damage_.empty() && stream_.avail_out != 0) expandMore();
    const std::string_view made{output_.data(), output_.size() - stream_.avail_out};
    // What stands in front of the damage is good.
    if (made.empty() && !damage_.empty()) throw Damage(damage_);
    return made;
}

void GzipStream::expandMore() {
    if (stream_.avail_in == 0) refill();
    if (stream_.avail_in == 0) {
        damage_ = shownAs_ + " is cut short: its end is missing";
        return;
    }
    const uInt before = stream_.avail_in;
    const int result = inflate(&stream_, Z_NO_FLUSH);
    consumed_ += before - stream_.avail_in;
    if (result == Z_STREAM_END) {
        ended_ = !anotherFollows();
        if (!ended_) inflateReset(&stream_);
    } else if (result == Z_MEM_ERROR) {
        throw std::bad_alloc();
    } else if (result != Z_OK && result != Z_BUF_ERROR) {
        const std::string_view words = stream_.msg ? stream_.msg : "";
        const bool sum = words == "incorrect data check" || words == "incorrect length check";
        damage_ = shownAs_ + (sum ? " is damaged: its content does not fit its checksum"
                                  : " is damaged: it cannot be expanded");
    }
}

}  // namespace containers
