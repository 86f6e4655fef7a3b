// A file without a name that is written from front to back and read anywhere.
#ifndef COMPANIONS_QXBASE_SCRATCH_FILE_H
#define COMPANIONS_QXBASE_SCRATCH_FILE_H

#include <cstdint>
#include <memory>
#include <vector>

#include "companions/store/appender.h"

namespace qxbase {

// A new file that goes away with the process, however that ends; not open if none can be made.
store::File openScratch();

class ScratchFile {
  public:
    // Null if none can be made.
    static std::unique_ptr<ScratchFile> create();

    void append(std::span<const std::byte> bytes) { appender_.append(bytes); }
    int64_t size() const { return appender_.end(); }
    // All of the bytes at a position; false beyond the end and after a failed write.
    bool read(int64_t position, std::span<std::byte> bytes);

    // Where a sequential reader is.
    int64_t next = 0;

  private:
    explicit ScratchFile(store::File file) : appender_(std::move(file), 0) {}

    store::Appender appender_;
    std::vector<std::byte> window_;
    int64_t windowStart_ = 0;
};

}  // namespace qxbase

#endif
