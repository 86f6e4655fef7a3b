#include "host/qxfeat/labels.h"

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/feature_files.h"
#include "host/cpp/fixed_text.h"

namespace {

using namespace qxfeat;

// User id, polygon; the point and the box.
constexpr RecordShape kLabelShape{2, 6};

}  // namespace

void labcre_(int32_t* handle, const char* coverage, const int32_t*, const int32_t*, int32_t* status,
             int32_t coverageLength) {
    enterWriter(
        handle, status,
        createFeatures(qx::textArgument(coverage, coverageLength), kLabelCode, kLabelShape));
}

void labwt_(const int32_t* handle, const int32_t*, const void* record) {
    FeatureFile* file = findWritten(handle);
    if (!file) return;
    const auto& label = *static_cast<const QxLabel*>(record);
    const int32_t realBytes = file->coordinateBytes();
    store::WordWriter words(
        file->writer->append(static_cast<std::size_t>(kLabelShape.bytes(realBytes))));
    words << label.userId << label.polygon;
    const double point[] = {label.x, label.y};
    putCoordinates(putCoordinates(words.place(), point, realBytes), label.box, realBytes);
    file->include(point);
}

void labcls_(const int32_t* handle) { featureFiles().close(*handle); }

void labopn_(int32_t* handle, const char* coverage, int32_t* status, int32_t coverageLength) {
    enterReader(handle, status,
                openFeatures(qx::textArgument(coverage, coverageLength), kLabelCode));
}

void labrec_(const int32_t* handle, int32_t* count) { countRecords(handle, count); }

void labpos_(const int32_t* handle, const int32_t* record, int32_t* status) {
    goToRecord(handle, record, status);
}

void labrd_(const int32_t* handle, int32_t* number, QxLabel* label, int32_t* status) {
    *status = kEnd;
    store::RecordReader* reader = findReader(handle);
    if (!reader) return;
    const int32_t realBytes = reader->header().realBytes;
    const std::byte* record =
        nextRecord(reader, static_cast<std::size_t>(kLabelShape.bytes(realBytes)), number);
    if (!record) return;
    store::WordReader words(record);
    words >> label->userId >> label->polygon;
    double point[2];
    getCoordinates(getCoordinates(words.place(), point, realBytes), label->box, realBytes);
    label->x = point[0];
    label->y = point[1];
    *status = kSuccess;
}
