#include "host/qxfeat/centroids.h"

#include <array>
#include <cstring>

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/feature_files.h"
#include "host/cpp/fixed_text.h"

namespace {

using namespace qxfeat;

static_assert(sizeof(QxCentroid) == 20);

// The point and the count in front of the labels.
constexpr RecordShape kFrontShape{1, 2};

}  // namespace

void cntcre_(int32_t* handle, const char* coverage, const int32_t*, const int32_t*, int32_t* status,
             int32_t coverageLength) {
    enterWriter(
        handle, status,
        createFeatures(qx::textArgument(coverage, coverageLength), kCentroidCode, kAnyShape));
}

void cntwt_(const int32_t* handle, const int32_t*, const void* record) {
    FeatureFile* file = findWritten(handle);
    QxCentroid centroid;
    std::memcpy(&centroid, record, sizeof centroid);
    if (!file || centroid.labelCount < 0) return;
    const std::span labels(
        reinterpret_cast<const int32_t*>(static_cast<const QxCentroid*>(record) + 1),
        static_cast<std::size_t>(centroid.labelCount));
    const double point[] = {centroid.x, centroid.y};
    const int32_t realBytes = file->coordinateBytes();
    std::array<std::byte, kFrontShape.bytes(sizeof(double))> front;
    store::put(putCoordinates(front.data(), point, realBytes), centroid.labelCount);
    const auto frontBytes = static_cast<std::size_t>(kFrontShape.bytes(realBytes));
    appendRecord(*file, {std::span(front).first(frontBytes), {}, labels, {}});
    file->include(point);
}

void cntcls_(const int32_t* handle) { featureFiles().close(*handle); }

void cntopn_(int32_t* handle, const char* coverage, int32_t* status, int32_t coverageLength) {
    enterReader(handle, status,
                openFeatures(qx::textArgument(coverage, coverageLength), kCentroidCode));
}

void cntrec_(const int32_t* handle, int32_t* count) { countRecords(handle, count); }

void cntpos_(const int32_t* handle, const int32_t* record, int32_t* status) {
    goToRecord(handle, record, status);
}

void cntrd_(const int32_t* handle, int32_t* number, QxCentroid* centroid, int32_t* labels,
            const int32_t* capacity, int32_t* status) {
    *status = kEnd;
    store::RecordReader* reader = findReader(handle);
    std::span<const std::byte> record;
    if (!reader) return;
    const int32_t realBytes = reader->header().realBytes;
    const auto frontBytes = static_cast<std::size_t>(kFrontShape.bytes(realBytes));
    if (!reader->next(record)) return;
    if (record.size() < frontBytes) return reader->noteDamage();
    double point[2];
    const auto count = store::get<int32_t>(getCoordinates(record.data(), point, realBytes));
    if (count < 0 || record.size() != frontBytes + static_cast<std::size_t>(count) * 4) {
        return reader->noteDamage();
    }
    *number = static_cast<int32_t>(reader->number());
    *centroid = {point[0], point[1], count};
    if (count > *capacity) {
        reader->again();
        *status = kNoRoom;
        return;
    }
    store::getAll(record.data() + frontBytes, std::span(labels, static_cast<std::size_t>(count)));
    *status = kSuccess;
}
