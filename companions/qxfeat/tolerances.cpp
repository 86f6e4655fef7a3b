#include "host/qxfeat/tolerances.h"

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/feature_files.h"
#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"

namespace {

using namespace qxfeat;

constexpr int32_t kToleranceCode = 22;
constexpr int32_t kRowBytes = 16;

std::unique_ptr<store::RecordReader> openTable(const char* coverage, int32_t length) {
    auto reader = openFeatures(qx::textArgument(coverage, length), kToleranceCode);
    if (reader && reader->header().recordBytes != kRowBytes) return nullptr;
    return reader;
}

}  // namespace

void tolset_(const char* coverage, const int32_t* count, const int32_t* column1,
             const int32_t* column2, const double* values, int32_t* status,
             int32_t coverageLength) {
    *status = kFailed;
    const std::string path(qx::textArgument(coverage, coverageLength));
    store::RecordHeader header;
    header.code = kToleranceCode;
    header.recordBytes = kRowBytes;
    header.realBytes = coordinateBytes(path);
    if (header.realBytes == 0) return;
    auto writer = store::RecordWriter::create(store::memberPath(path, kToleranceCode), header);
    if (!writer) return;
    for (int32_t row = 0; row < *count; ++row) {
        // The value keeps its 64 bits in either precision.
        store::WordWriter(writer->append(kRowBytes)) << column1[row] << column2[row] << values[row];
    }
    writer->close();
    if (!writer->failed()) *status = kSuccess;
}

void tolget_(const char* coverage, const int32_t* count, int32_t* column1, int32_t* column2,
             double* values, int32_t* status, int32_t coverageLength) {
    *status = kFailed;
    const auto reader = openTable(coverage, coverageLength);
    if (!reader) return;
    for (int32_t row = 0; row < *count; ++row) {
        std::span<const std::byte> record;
        if (!reader->next(record)) return;
        store::WordReader(record.data()) >> column1[row] >> column2[row] >> values[row];
    }
    *status = kSuccess;
}

void tolrec_(const char* coverage, int32_t* count, int32_t* status, int32_t coverageLength) {
    const auto reader = openTable(coverage, coverageLength);
    *count = reader ? static_cast<int32_t>(reader->count()) : 0;
    *status = reader ? kSuccess : kFailed;
}
