#include "host/qxgridio/stacks.h"

#include "companions/qxgridio/state.h"
#include "companions/store/member_names.h"
#include "companions/store/record_file.h"
#include "host/cpp/fixed_text.h"

namespace qxgridio {

store::HandleTable<store::RecordWriter>& openStacks() {
    static store::HandleTable<store::RecordWriter> stacks;
    return stacks;
}

}  // namespace qxgridio

namespace {

using namespace qxgridio;
using store::RecordHeader;
using store::RecordReader;
using store::RecordWriter;

constexpr int32_t kFailed = -1;
// The list belongs to no file code.
constexpr int32_t kStackCode = -2;
constexpr int32_t kMemberBytes = 80;

std::string listPath(const char* stack, int32_t length) {
    return store::joinPath(store::plainPath(qx::textArgument(stack, length)), "stack");
}

std::unique_ptr<RecordReader> openList(const char* stack, int32_t length) {
    auto reader = RecordReader::open(listPath(stack, length));
    if (reader &&
        (reader->header().code != kStackCode || reader->header().recordBytes != kMemberBytes)) {
        return nullptr;
    }
    return reader;
}

}  // namespace

void stkcre_(int32_t* handle, const char* stack, int32_t* status, int32_t stackLength) {
    flushOnUnwinding();
    RecordHeader header;
    header.code = kStackCode;
    header.recordBytes = kMemberBytes;
    *status = kFailed;
    auto writer = RecordWriter::create(listPath(stack, stackLength), header);
    if (!writer) return;
    *handle = openStacks().add(std::move(writer));
    *status = 0;
}

void stkadd_(const int32_t* handle, const char* member, int32_t* status, int32_t memberLength) {
    *status = kFailed;
    RecordWriter* writer = openStacks().find(*handle);
    if (!writer) return;
    qx::padText(reinterpret_cast<char*>(writer->append(kMemberBytes)), kMemberBytes,
                qx::textArgument(member, memberLength));
    *status = writer->failed() ? kFailed : 0;
}

void stkcls_(const int32_t* handle) { openStacks().close(*handle); }

void saknly_(const char* stack, int32_t* count, int32_t* status, int32_t stackLength) {
    const auto reader = openList(stack, stackLength);
    *count = reader ? static_cast<int32_t>(reader->count()) : 0;
    *status = reader ? 0 : kFailed;
}

void stkgnm_(const char* stack, const int32_t* number, char* name, int32_t* status,
             int32_t stackLength, int32_t nameLength) {
    *status = kFailed;
    const auto reader = openList(stack, stackLength);
    std::span<const std::byte> record;
    if (!reader || !reader->seek(*number) || !reader->next(record)) return;
    qx::textResult(name, nameLength,
                   qx::trimText(reinterpret_cast<const char*>(record.data()), record.size()));
    *status = 0;
}
