#include "host/qxfeat/annotation.h"

#include <array>
#include <cstddef>
#include <cstring>

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/feature_files.h"
#include "host/cpp/fixed_text.h"

// The record is shared with programs that know it by its bytes.
static_assert(offsetof(AnnoRecord, symbolSize) == 8);
static_assert(offsetof(AnnoRecord, pointCount) == 16);
static_assert(offsetof(AnnoRecord, leaderCount) == 28);
static_assert(offsetof(AnnoRecord, lineStart) == 32);
static_assert(offsetof(AnnoRecord, lineTableB) == 72);
static_assert(offsetof(AnnoRecord, textHeight) == 112);
static_assert(offsetof(AnnoRecord, extraValues) == 120);
static_assert(offsetof(AnnoRecord, text) == 136);
static_assert(offsetof(AnnoRecord, leaderPoints) == 456);
static_assert(offsetof(AnnoRecord, extraWord1) == 536);
static_assert(offsetof(AnnoRecord, extraWord2) == 540);
static_assert(sizeof(AnnoRecord) == 544);

namespace {

using namespace qxfeat;

constexpr std::size_t kLines = QX_ANNO_LINES;
// Ten words, and the two tables of 16-bit numbers.
constexpr std::size_t kWordBytes = 10 * 4 + 2 * kLines * 2;
// Height, two extra values, and the leader points; the points follow.
constexpr std::size_t kFixedReals = 3 + 2 * QX_ANNO_LEADERS;

void putTable(store::WordWriter& words, const int16_t (&table)[kLines]) {
    for (const int16_t number : table) words << number;
}

void getTable(store::WordReader& words, int16_t (&table)[kLines]) {
    for (int16_t& number : table) words >> number;
}

std::size_t coordinatesOf(int32_t pointCount) { return static_cast<std::size_t>(pointCount) * 2; }

}  // namespace

void anncre_(int32_t* handle, const char* coverage, const char* subclass, const int32_t*,
             const int32_t*, int32_t* status, int32_t coverageLength, int32_t subclassLength) {
    enterWriter(handle, status,
                createFeatures(qx::textArgument(coverage, coverageLength), kAnnotationCode,
                               kAnyShape, qx::textArgument(subclass, subclassLength)));
}

void annwt_(const int32_t* handle, int32_t* number, const void* record) {
    *number = 0;
    FeatureFile* file = findWritten(handle);
    AnnoRecord anno;
    std::memcpy(&anno, record, sizeof anno);
    if (!file || anno.pointCount < 0) return;
    const int32_t realBytes = file->coordinateBytes();
    std::array<std::byte, kWordBytes + kFixedReals * sizeof(double)> front;
    store::WordWriter words(front.data());
    words << anno.userId << anno.groupCode << anno.symbolSize << anno.textSymbol << anno.pointCount
          << anno.lineCount << anno.textLength << anno.leaderCount << anno.extraWord1
          << anno.extraWord2;
    putTable(words, anno.lineStart);
    putTable(words, anno.lineTableB);
    std::byte* place = words.place();
    place = putCoordinates(place, {&anno.textHeight, 1}, realBytes);
    place = putCoordinates(place, anno.extraValues, realBytes);
    place = putCoordinates(place, {anno.leaderPoints[0], 2 * QX_ANNO_LEADERS}, realBytes);
    const std::span points(
        reinterpret_cast<const double*>(static_cast<const AnnoRecord*>(record) + 1),
        coordinatesOf(anno.pointCount));
    const auto frontBytes = static_cast<std::size_t>(place - front.data());
    appendRecord(*file, {std::span(front).first(frontBytes),
                         points,
                         {},
                         qx::trimText(anno.text, sizeof anno.text)});
    file->include(points);
    *number = static_cast<int32_t>(file->writer->count());
}

void anncls_(const int32_t* handle) { featureFiles().close(*handle); }

void annopn_(int32_t* handle, const char* coverage, const char* subclass, int32_t* status,
             int32_t coverageLength, int32_t subclassLength) {
    enterReader(handle, status,
                openFeatures(qx::textArgument(coverage, coverageLength), kAnnotationCode,
                             qx::textArgument(subclass, subclassLength)));
}

void annrec_(const int32_t* handle, int32_t* count) { countRecords(handle, count); }

void annpos_(const int32_t* handle, const int32_t* number, int32_t* status) {
    goToRecord(handle, number, status);
}

void annrd_(const int32_t* handle, AnnoRecord* record, double* points, const int32_t* capacity,
            int32_t* status) {
    *status = kEnd;
    store::RecordReader* reader = findReader(handle);
    std::span<const std::byte> bytes;
    if (!reader || !reader->next(bytes) || bytes.size() < kWordBytes) return;
    store::WordReader words(bytes.data());
    words >> record->userId >> record->groupCode >> record->symbolSize >> record->textSymbol >>
        record->pointCount >> record->lineCount >> record->textLength >> record->leaderCount >>
        record->extraWord1 >> record->extraWord2;
    getTable(words, record->lineStart);
    getTable(words, record->lineTableB);
    const int32_t realBytes = reader->header().realBytes;
    const std::size_t coordinates = coordinatesOf(record->pointCount);
    const std::size_t front =
        kWordBytes + (kFixedReals + coordinates) * static_cast<std::size_t>(realBytes);
    if (record->pointCount < 0 || bytes.size() < front ||
        bytes.size() - front > sizeof record->text) {
        return;
    }
    const std::byte* place = words.place();
    place = getCoordinates(place, {&record->textHeight, 1}, realBytes);
    place = getCoordinates(place, record->extraValues, realBytes);
    place = getCoordinates(place, {record->leaderPoints[0], 2 * QX_ANNO_LEADERS}, realBytes);
    if (record->pointCount > *capacity) {
        reader->again();
        *status = kNoRoom;
        return;
    }
    place = getCoordinates(place, {points, coordinates}, realBytes);
    qx::padText(record->text, sizeof record->text,
                {reinterpret_cast<const char*>(place), bytes.size() - front});
    *status = kSuccess;
}

void annbig_(const int32_t* handle, double* box, int32_t* status) {
    const int32_t noRoom = 0;
    AnnoRecord anno{};
    annrd_(handle, &anno, nullptr, &noRoom, status);
    if (*status != kNoRoom) return;
    store::RecordReader* reader = findReader(handle);
    std::span<const std::byte> bytes;
    *status = kEnd;
    if (!reader->next(bytes)) return;
    const auto realBytes = static_cast<std::size_t>(reader->header().realBytes);
    boxOfStored(bytes.subspan(kWordBytes + kFixedReals * realBytes,
                              coordinatesOf(anno.pointCount) * realBytes),
                reader->header().realBytes, box);
    const double height = anno.textHeight;
    const double wider[] = {-height, -height, height, height};
    for (int side = 0; side < 4; ++side) box[side] += wider[side];
    *status = kSuccess;
}
