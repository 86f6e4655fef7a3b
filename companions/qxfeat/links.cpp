#include "host/qxfeat/links.h"

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/feature_files.h"
#include "host/cpp/fixed_text.h"

namespace {

using namespace qxfeat;

constexpr RecordShape kLinkShape{0, 4};

}  // namespace

void lnkcre_(int32_t* handle, const char* coverage, const int32_t*, const int32_t*, int32_t* status,
             int32_t coverageLength) {
    enterWriter(handle, status,
                createFeatures(qx::textArgument(coverage, coverageLength), kLinkCode, kLinkShape));
}

void lnkwt_(const int32_t* handle, const int32_t*, const double* link) {
    FeatureFile* file = findWritten(handle);
    if (!file) return;
    const int32_t realBytes = file->coordinateBytes();
    const std::span points(link, 4);
    putCoordinates(file->writer->append(static_cast<std::size_t>(kLinkShape.bytes(realBytes))),
                   points, realBytes);
    file->include(points);
}

void lnkcls_(const int32_t* handle) { featureFiles().close(*handle); }

void lnkopn_(int32_t* handle, const char* coverage, int32_t* status, int32_t coverageLength) {
    enterReader(handle, status,
                openFeatures(qx::textArgument(coverage, coverageLength), kLinkCode));
}

void lnkrec_(const int32_t* handle, int32_t* count) { countRecords(handle, count); }

void lnkrd_(const int32_t* handle, int32_t* number, double* link, int32_t* status) {
    *status = kEnd;
    store::RecordReader* reader = findReader(handle);
    if (!reader) return;
    const int32_t realBytes = reader->header().realBytes;
    const std::byte* record =
        nextRecord(reader, static_cast<std::size_t>(kLinkShape.bytes(realBytes)), number);
    if (!record) return;
    getCoordinates(record, {link, 4}, realBytes);
    *status = kSuccess;
}
