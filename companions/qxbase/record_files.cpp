// Record files with a header, as the C operations give them.
#include <algorithm>
#include <cstring>
#include <memory>

#include "companions/qxbase/state.h"
#include "companions/store/handle_table.h"
#include "companions/store/record_file.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/records.h"

namespace {

using store::RecordHeader;
using store::RecordReader;
using store::RecordWriter;

constexpr int32_t kFailed = -1;
constexpr int32_t kTooLong = 1;
constexpr int32_t kWordBytes = 4;

struct OpenFile {
    std::unique_ptr<RecordWriter> writer;
    std::unique_ptr<RecordReader> reader;
    bool failed = false;
};

store::HandleTable<OpenFile> files;

const RecordHeader* headerOf(const OpenFile* file) {
    if (!file) return nullptr;
    return file->writer ? &file->writer->header() : &file->reader->header();
}

}  // namespace

namespace qxbase {

void closeRecordFiles() { files.closeAll(); }

}  // namespace qxbase

void vcreat_(int32_t* handle, const char* path, const int32_t* code, const int32_t* a,
             const int32_t* b, const int32_t* c, const int32_t* recordWords, int32_t* status,
             int32_t pathLength) {
    *status = kFailed;
    if (*recordWords < 0 || *recordWords > INT32_MAX / kWordBytes) return;
    RecordHeader header;
    header.code = *code;
    header.kept = {*a, *b, *c};
    header.recordBytes = *recordWords * kWordBytes;
    auto writer = RecordWriter::create(std::string(qx::textArgument(path, pathLength)), header);
    if (!writer) return;
    *handle = files.add(std::make_unique<OpenFile>(OpenFile{std::move(writer), nullptr}));
    *status = 0;
}

void vopen_(int32_t* handle, const char* path, int32_t* code, int32_t* recordWords,
            int32_t* recordCount, int32_t* status, int32_t pathLength) {
    *status = kFailed;
    auto reader = RecordReader::open(std::string(qx::textArgument(path, pathLength)));
    if (!reader) return;
    *code = reader->header().code;
    *recordWords = reader->header().recordBytes / kWordBytes;
    *recordCount = static_cast<int32_t>(std::min<int64_t>(reader->count(), INT32_MAX));
    *handle = files.add(std::make_unique<OpenFile>(OpenFile{nullptr, std::move(reader)}));
    *status = 0;
}

void vwrite_(const int32_t* handle, const int32_t* number, const void* words,
             const int32_t* count) {
    OpenFile* file = files.find(*handle);
    if (!file || !file->writer) return;
    const int32_t recordBytes = file->writer->header().recordBytes;
    const bool lengthFits = *count >= 0 && *count <= INT32_MAX / kWordBytes &&
                            (recordBytes == 0 || recordBytes == *count * kWordBytes);
    if (!lengthFits) {
        file->failed = true;
        return;
    }
    const auto bytes = static_cast<std::size_t>(*count) * kWordBytes;
    if (*number == file->writer->count() + 1) {
        constexpr std::size_t kInOnePart = 32 * 1024;
        file->writer->announce(bytes);
        const auto* from = static_cast<const std::byte*>(words);
        for (std::size_t start = 0; start < bytes; start += kInOnePart) {
            const std::size_t part = std::min(bytes - start, kInOnePart);
            std::memcpy(file->writer->part(part), from + start, part);
        }
    } else if (recordBytes == 0 || *number < 1 || *number > file->writer->count() ||
               !file->writer->overwrite(*number, {static_cast<const std::byte*>(words), bytes})) {
        file->failed = true;
    }
}

void vread_(const int32_t* handle, const int32_t* number, void* words, const int32_t* capacity,
            int32_t* count, int32_t* status) {
    *count = 0;
    *status = kFailed;
    OpenFile* file = files.find(*handle);
    std::span<const std::byte> record;
    if (!file || !file->reader || !file->reader->seek(*number) || !file->reader->next(record)) {
        return;
    }
    *count = static_cast<int32_t>(record.size() / kWordBytes);
    if (*count > *capacity) {
        *status = kTooLong;
        return;
    }
    if (*count > 0) std::memcpy(words, record.data(), static_cast<std::size_t>(*count) * 4);
    *status = 0;
}

void vhead_(const int32_t* handle, const void* words, const int32_t* count) {
    OpenFile* file = files.find(*handle);
    if (!file || !file->writer || *count < 0) return;
    file->writer->setHost(
        {static_cast<const std::byte*>(words), static_cast<std::size_t>(*count) * kWordBytes});
}

void vgethd_(const int32_t* handle, void* words, const int32_t* capacity, int32_t* count) {
    const RecordHeader* header = headerOf(files.find(*handle));
    *count = header ? header->hostBytes / kWordBytes : 0;
    if (*count > *capacity) *count = *capacity < 0 ? 0 : *capacity;
    if (*count > 0) {
        std::memcpy(words, header->host.data(), static_cast<std::size_t>(*count) * kWordBytes);
    }
}

void vstat_(const int32_t* handle, int32_t* status) {
    const OpenFile* file = files.find(*handle);
    // What waits in the buffer may fail too.
    if (file && file->writer) file->writer->flush();
    const bool sound = file && !file->failed && !(file->writer && file->writer->failed());
    *status = sound ? 0 : kFailed;
}

void vclose_(const int32_t* handle) { files.close(*handle); }

void VcreatC(int32_t* handle, const char* path, const int32_t* code, const int32_t* a,
             const int32_t* b, const int32_t* c, const int32_t* recordWords, int32_t* status) {
    vcreat_(handle, path, code, a, b, c, recordWords, status,
            static_cast<int32_t>(std::strlen(path)));
}

void VwriteC(const int32_t* handle, const int32_t* number, const void* words,
             const int32_t* count) {
    vwrite_(handle, number, words, count);
}

void VheadwC(const int32_t* handle, const void* words, const int32_t* count) {
    vhead_(handle, words, count);
}

void VcloseC(const int32_t* handle) { vclose_(handle); }
