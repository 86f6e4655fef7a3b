// Record files with a header: how features, lists and indexes of a dataset are stored.
//
// The file begins with a header of 128 bytes that names what it is. Fixed records follow one
// another; records of any length are each led by their length in bytes as a 32-bit integer.
// The header's record count is -1 while a file is being written; it is put right whenever the file
// is flushed or closed, and a reader that finds -1 counts the records itself. The header says where
// the records end, too, so that going on behind them costs no reading.
#ifndef COMPANIONS_STORE_RECORD_FILE_H
#define COMPANIONS_STORE_RECORD_FILE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "companions/store/appender.h"
#include "companions/store/open_files.h"

namespace store {

struct RecordHeader {
    static constexpr std::size_t kBytes = 128;
    static constexpr std::size_t kHostBytes = 36;
    static constexpr std::size_t kLabelBytes = 32;
    static constexpr std::size_t kLongestRecord = INT32_MAX;

    int32_t code = 0;               // what the file is: its file code
    std::array<int32_t, 3> kept{};  // three integers that the creator gave
    int32_t recordBytes = 0;        // bytes in a record, 0 for records of any length
    int32_t realBytes = 8;          // bytes of a coordinate: 4 single, 8 double precision
    int64_t count = -1;             // records, -1 while the file is being written
    int64_t end = 0;                // where they end, as far as the count says; 0 for not known
    int32_t hostBytes = 0;          // how much of host is set
    std::array<std::byte, kHostBytes> host{};
    std::string label;  // the subclass, at most 32 bytes

    std::array<std::byte, kBytes> bytes() const;
    // False if the bytes are no such header.
    static bool parse(std::span<const std::byte, kBytes> bytes, RecordHeader& header);
};

class RecordWriter : public Buffered {
  public:
    // Creates the file anew, or with append goes on behind the records of an existing one, whose
    // header then counts: it must have the same code, record length and coordinates. Null on
    // failure.
    static std::unique_ptr<RecordWriter> create(const std::string& path, const RecordHeader& header,
                                                bool append = false);
    // Creates the file anew, with a header that is written with the first records: a small file is
    // one write, and one that is cut off before it is nothing.
    static std::unique_ptr<RecordWriter> createInOnePiece(const std::string& path,
                                                          const RecordHeader& header);
    ~RecordWriter() override { close(); }

    const RecordHeader& header() const { return header_; }
    int64_t count() const { return count_; }
    bool failed() const { return appender_.failed(); }

    // Room for the next record, to be filled before any other call. In a file of fixed records
    // bytes is the length of one. More than a length can say throws std::length_error.
    std::byte* append(std::size_t bytes) {
        const bool fixed = header_.recordBytes != 0;
        if (bytes > RecordHeader::kLongestRecord) refuseLength();
        std::byte* place = appender_.reserve(fixed ? bytes : bytes + 4);
        ++count_;
        if (fixed) return place;
        putLength(place, bytes);
        return place + 4;
    }
    // The same for a record that is filled in parts: no memory is taken for it as a whole. Parts
    // of the announced length in all follow, each filled before the next.
    void announce(std::size_t bytes) {
        if (bytes > RecordHeader::kLongestRecord) refuseLength();
        ++count_;
        if (header_.recordBytes == 0) putLength(appender_.reserve(4), bytes);
    }
    std::byte* part(std::size_t bytes) { return appender_.reserve(bytes); }
    // Overwrites a record of a file of fixed records that was written before.
    bool overwrite(int64_t number, std::span<const std::byte> bytes);
    void setHost(std::span<const std::byte> bytes);
    void flush() override;
    void close();

  private:
    RecordWriter(File file, int64_t position, RecordHeader header);
    static std::unique_ptr<RecordWriter> goOn(const std::string& path, const RecordHeader& header);
    static void putLength(std::byte* place, std::size_t bytes);
    [[noreturn]] static void refuseLength();
    void begin();
    void setCount(int64_t count, int64_t end);
    void writeHeader();

    Appender appender_;
    RecordHeader header_;
    int64_t count_;
};

class RecordReader {
  public:
    static std::unique_ptr<RecordReader> open(const std::string& path);

    const RecordHeader& header() const { return header_; }
    // Records in the file; counts them if the header does not say.
    int64_t count();
    // The next record, good until the next call; false at the end. What a damaged or cut file
    // claims beyond its end is not there.
    bool next(std::span<const std::byte>& record);
    // Remembers that the file is damaged (host/qxbase/failures.h). A file that ends before its
    // count does is found out here; what a record must hold only its reader knows.
    void noteDamage() const;
    // Has next remember where records of any length lie as it passes them, eight bytes for each, so
    // that seek need not look for them.
    void keepPlaces() {
        if (!keepsPlaces_) beginPlaces();
    }
    // Makes the record of a number from 1 the next one; false if there is none.
    bool seek(int64_t number);
    // Makes the record that next gave last the next one.
    void again();
    // Whether the machine failed to read what is there.
    bool failed() const { return failed_; }
    // Number of the record that next gave last, 0 before the first.
    int64_t number() const { return number_; }

  private:
    RecordReader(File file, RecordHeader header);
    // Bytes from the position on, at least the wanted number; empty if the file has fewer.
    std::span<const std::byte> window(int64_t position, std::size_t bytes);
    void beginPlaces();
    bool turnTo(int64_t position, std::size_t bytes);
    void findRecords();
    bool readNext(std::span<const std::byte>& record);

    File file_;
    RecordHeader header_;
    int64_t size_;
    int64_t position_ = RecordHeader::kBytes;
    int64_t number_ = 0;
    int64_t lastPosition_ = RecordHeader::kBytes;
    bool knowsCount_ = false;  // whether the header's count is one to go by
    bool counted_ = false;
    bool failed_;
    struct Window {
        std::vector<std::byte> bytes;
        int64_t start = 0;
        std::size_t used = 0;
        bool holds(int64_t position, std::size_t count) const {
            return position >= start &&
                   position + static_cast<int64_t>(count) <= start + static_cast<int64_t>(used);
        }
    };
    // The places of the file that were looked at last, the latest first, for readers that go back
    // and forth between two and go on in both. A file that is read in its order takes memory for
    // one alone.
    std::array<Window, 3> windows_;
    bool jumps_ = false;           // whether it was read out of its order
    std::vector<int64_t> places_;  // of records of any length, all once one was sought
    bool keepsPlaces_ = false;
    bool hasAllPlaces_ = false;
};

}  // namespace store

#endif
