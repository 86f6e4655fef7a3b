// One open text file: read by lines in large blocks, or written through a buffer.
#ifndef COMPANIONS_QXBASE_TEXT_CHANNEL_H
#define COMPANIONS_QXBASE_TEXT_CHANNEL_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "companions/store/appender.h"
#include "companions/store/open_files.h"
#include "host/qxbase/channels.h"

namespace qxbase {

class TextReader {
  public:
    enum class Result { kLine, kPiece, kEnd, kFailed };
    static constexpr std::size_t kBlockBytes = 256 * 1024;
    static constexpr std::size_t kUsualLength = 80;

    explicit TextReader(store::File file);

    // The next line, cut or padded to length; count is what is in it of the line. In pieces, what
    // does not fit is not cut but left for the next call, and the result is kPiece.
    Result read(char* line, std::size_t length, std::size_t& count, bool inPieces = false);
    // The same for a buffer of the usual length, as quickly as most lines can be read; false, and
    // nothing is read, if this one takes more care.
    bool readUsual(char* line, int32_t& count);
    bool atEnd() { return left() == 0 && !refill(); }
    void rewind();
    int64_t bytesRead() const { return blockStart_ + (window_.next - block_.data()); }
    // What has been read of the file and not been given out. Who moves it on takes the lines.
    QxWindow& window() { return window_; }

  private:
    bool refill();
    std::size_t left() const { return static_cast<std::size_t>(window_.end - window_.next); }

    store::File file_;
    std::vector<char> block_;
    int64_t blockStart_ = 0;
    QxWindow window_{};
    bool failed_ = false;
};

class TextWriter : public store::Buffered {
  public:
    explicit TextWriter(store::File file) : appender_(std::move(file), 0) {}
    ~TextWriter() override { flush(); }

    bool write(std::string_view text, bool endsLine);
    void flush() override { appender_.flush(); }
    bool failed() const { return appender_.failed(); }
    // Gives the file away, with all that was written in it.
    store::File release() {
        flush();
        return std::move(appender_.file());
    }

  private:
    store::Appender appender_;
};

struct TextChannel {
    std::unique_ptr<TextReader> reader;
    std::unique_ptr<TextWriter> writer;
    std::string madeAs;  // path of a file that acreat_ made, empty for any other
};

}  // namespace qxbase

#endif
