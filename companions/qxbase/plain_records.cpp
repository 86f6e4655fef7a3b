// Plain record files: the records alone.
#include <algorithm>
#include <array>
#include <memory>

#include "companions/qxbase/state.h"
#include "companions/store/file.h"
#include "companions/store/handle_table.h"
#include "companions/store/record_file.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/records.h"

namespace {

using store::File;

constexpr int32_t kFailed = 1;

struct PlainRecordFile {
    File file;
    int32_t recordBytes;
};

store::HandleTable<PlainRecordFile> files;

void add(int32_t* handle, int32_t* status, File file, int32_t recordBytes) {
    if (!file.isOpen() || recordBytes < 1) {
        *status = kFailed;
        return;
    }
    *handle =
        files.add(std::make_unique<PlainRecordFile>(PlainRecordFile{std::move(file), recordBytes}));
    *status = 0;
}

// Whether the file holds something that is no plain records of this length. What begins like a
// record file with a header is none, whatever its size.
bool isOther(const File& file, int32_t recordBytes) {
    std::array<std::byte, store::RecordHeader::kBytes> front{};
    store::RecordHeader header;
    const bool hasHeader = file.readAt(0, front) == static_cast<int64_t>(front.size()) &&
                           store::RecordHeader::parse(front, header);
    return hasHeader || (recordBytes > 0 && file.size() % recordBytes != 0);
}

int64_t place(const PlainRecordFile& file, int32_t number) {
    return (int64_t{number} - 1) * file.recordBytes;
}

}  // namespace

namespace qxbase {

void closePlainRecordFiles() { files.closeAll(); }

}  // namespace qxbase

void iexist_(const char* name, int32_t* status, int32_t nameLength) {
    *status = store::exists(qxbase::located(qx::textArgument(name, nameLength))) ? 0 : kFailed;
}

void icreat_(int32_t* handle, const char* name, const int32_t* recordBytes, int32_t* status,
             int32_t nameLength) {
    add(handle, status,
        File::create(qxbase::located(qx::textArgument(name, nameLength)),
                     File::Creation::kMustBeNew),
        *recordBytes);
}

void iopen_(int32_t* handle, const char* name, const int32_t* recordBytes, const int32_t* mode,
            int32_t* status, int32_t nameLength) {
    const std::string path = qxbase::located(qx::textArgument(name, nameLength));
    File file = *mode == 2 ? File::readWrite(path) : File::read(path);
    if (*mode == 2 && file.isOpen() && isOther(file, *recordBytes)) file.close();
    add(handle, status, std::move(file), *recordBytes);
}

void iwrite_(const int32_t* handle, const void* record, const int32_t* recordBytes,
             const int32_t* number, int32_t* status) {
    PlainRecordFile* found = files.find(*handle);
    const bool fits = found && *number >= 1 && *recordBytes == found->recordBytes;
    *status = fits && found->file.writeAt(place(*found, *number),
                                          {static_cast<const std::byte*>(record),
                                           static_cast<std::size_t>(*recordBytes)})
                  ? 0
                  : kFailed;
}

void iread_(const int32_t* handle, void* record, const int32_t* recordBytes, const int32_t* number,
            int32_t* status) {
    PlainRecordFile* found = files.find(*handle);
    const bool fits = found && *number >= 1 && *recordBytes == found->recordBytes;
    *status = fits && found->file.readAt(place(*found, *number),
                                         {static_cast<std::byte*>(record),
                                          static_cast<std::size_t>(*recordBytes)}) == *recordBytes
                  ? 0
                  : kFailed;
}

void icount_(const int32_t* handle, int32_t* count) {
    PlainRecordFile* found = files.find(*handle);
    const int64_t records = found ? found->file.size() / found->recordBytes : 0;
    *count = static_cast<int32_t>(std::clamp<int64_t>(records, 0, INT32_MAX));
}

void isize_(const int32_t* handle, int64_t* bytes) {
    PlainRecordFile* found = files.find(*handle);
    *bytes = found ? found->file.size() : 0;
}

void iclose_(const int32_t* handle) { files.close(*handle); }
