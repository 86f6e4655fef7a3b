#include <algorithm>
#include <cerrno>
#include <stdexcept>

#include "companions/store/record_file.h"
#include "companions/store/words.h"

namespace store {

RecordWriter::RecordWriter(File file, int64_t position, RecordHeader header)
    : appender_(std::move(file), position), header_(std::move(header)), count_(header_.count) {}

std::unique_ptr<RecordWriter> RecordWriter::goOn(const std::string& path,
                                                 const RecordHeader& header) {
    auto reader = RecordReader::open(path);
    if (!reader) return nullptr;
    RecordHeader kept = reader->header();
    if (kept.code != header.code || kept.recordBytes != header.recordBytes ||
        kept.realBytes != header.realBytes) {
        return nullptr;
    }
    File file = File::readWrite(path);
    if (!file.isOpen()) return nullptr;
    // What counts is what can be read. A record that a failure cut short goes.
    const int64_t claimed = kept.count;
    int64_t end = RecordHeader::kBytes;
    if (kept.recordBytes != 0) {
        kept.count = reader->count();
        end += kept.count * kept.recordBytes;
    } else if (kept.count >= 0 && kept.end >= end && kept.end == file.size()) {
        end = kept.end;
    } else {
        std::span<const std::byte> record;
        while (reader->next(record)) end += 4 + static_cast<int64_t>(record.size());
        kept.count = reader->number();
    }
    // Nothing is cut off that only could not be read.
    if (reader->failed()) return nullptr;
    // The words of a file that was cut off may speak of records that never reached it.
    if (kept.count != claimed) kept.hostBytes = 0;
    if (end != file.size() && !file.truncate(end)) return nullptr;
    std::unique_ptr<RecordWriter> writer(new RecordWriter(std::move(file), end, kept));
    writer->begin();
    return writer;
}

std::unique_ptr<RecordWriter> RecordWriter::create(const std::string& path,
                                                   const RecordHeader& header, bool append) {
    RecordHeader fresh = header;
    fresh.count = 0;
    // All memory is there before the file is, so that no file is left without its header.
    std::unique_ptr<RecordWriter> writer(new RecordWriter({}, RecordHeader::kBytes, fresh));
    File& file = writer->appender_.file();
    file = File::create(path, append ? File::Creation::kMustBeNew : File::Creation::kAnew);
    if (!file.isOpen()) return append && errno == EEXIST ? goOn(path, header) : nullptr;
    writer->begin();
    return writer;
}

std::unique_ptr<RecordWriter> RecordWriter::createInOnePiece(const std::string& path,
                                                             const RecordHeader& header) {
    RecordHeader fresh = header;
    fresh.count = 0;
    std::unique_ptr<RecordWriter> writer(new RecordWriter({}, 0, fresh));
    writer->setCount(-1, 0);
    writer->appender_.append(writer->header_.bytes());
    writer->appender_.file() = File::create(path, File::Creation::kAnew);
    return writer->appender_.file().isOpen() ? std::move(writer) : nullptr;
}

void RecordWriter::begin() {
    setCount(-1, 0);
    writeHeader();
}

void RecordWriter::setCount(int64_t count, int64_t end) {
    header_.count = count;
    header_.end = end;
}

void RecordWriter::refuseLength() {
    throw std::length_error("a record of more than 2147483647 bytes");
}

void RecordWriter::putLength(std::byte* place, std::size_t bytes) {
    put(place, static_cast<int32_t>(bytes));
}

bool RecordWriter::overwrite(int64_t number, std::span<const std::byte> bytes) {
    appender_.flush();
    const int64_t position = static_cast<int64_t>(RecordHeader::kBytes) +
                             (number - 1) * static_cast<int64_t>(header_.recordBytes);
    return appender_.file().writeAt(position, bytes);
}

void RecordWriter::setHost(std::span<const std::byte> bytes) {
    const std::size_t kept = std::min(bytes.size(), RecordHeader::kHostBytes);
    std::copy_n(bytes.begin(), kept, header_.host.begin());
    header_.hostBytes = static_cast<int32_t>(kept);
}

void RecordWriter::writeHeader() { appender_.file().writeAt(0, header_.bytes()); }

void RecordWriter::flush() {
    const bool together = appender_.isWholeInBuffer();
    if (together) {
        setCount(count_, appender_.end());
        appender_.overwriteFront(header_.bytes());
    }
    appender_.flush();
    // After a failed write the count is for a reader to find out.
    const bool failed = appender_.failed();
    if (!together || failed) {
        setCount(failed ? -1 : count_, failed ? 0 : appender_.end());
        writeHeader();
    }
    setCount(-1, 0);
}

void RecordWriter::close() {
    if (!appender_.file().isOpen()) return;
    flush();
    appender_.file().close();
}

}  // namespace store
