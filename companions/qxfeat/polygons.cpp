#include "host/qxfeat/polygons.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/feature_files.h"
#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/lists.h"

namespace {

using namespace qxfeat;

static_assert(sizeof(QxPolygon) == 36);

// The box and the count, all that a record of a file of boxes holds.
constexpr RecordShape kBoxShape{1, 4};
constexpr std::size_t kTripletWords = 3;
constexpr std::size_t kTripletBytes = kTripletWords * 4;

int32_t codeOf(int32_t kind) { return kind == QX_POLYGON_BOXES ? kPolygonBoxCode : kPolygonCode; }

void writePolygon(FeatureFile& file, std::span<const double, 4> box, int32_t arcCount,
                  std::span<const int32_t> arcs) {
    const int32_t realBytes = file.coordinateBytes();
    std::array<std::byte, kBoxShape.bytes(sizeof(double))> front;
    store::put(putCoordinates(front.data(), box, realBytes), arcCount);
    const auto frontBytes = static_cast<std::size_t>(kBoxShape.bytes(realBytes));
    appendRecord(file, {std::span(front).first(frontBytes), {}, arcs, {}});
    file.include(box);
}

// Triplets of the record that was read last, as many as there are and as fit.
int32_t takeArcs(FeatureFile& file, int32_t* arcs, int32_t room) {
    const std::size_t triplets =
        std::min(file.unread.size() / kTripletBytes, static_cast<std::size_t>(std::max(room, 0)));
    store::getAll(file.unread.data(), std::span(arcs, triplets * kTripletWords));
    file.unread = file.unread.subspan(triplets * kTripletBytes);
    return static_cast<int32_t>(triplets);
}

std::unique_ptr<store::RecordReader> openPath(std::string_view path) {
    auto reader = store::RecordReader::open(std::string(path));
    if (!reader) return nullptr;
    const int32_t code = reader->header().code;
    const bool polygons = code == kPolygonCode || code == kPolygonBoxCode || code == kRegionCode;
    return polygons ? std::move(reader) : nullptr;
}

}  // namespace

void palcre_(int32_t* handle, const char* coverage, const int32_t*, const int32_t* kind,
             int32_t* status, int32_t coverageLength) {
    enterWriter(handle, status,
                createFeatures(qx::textArgument(coverage, coverageLength), codeOf(*kind),
                               *kind == QX_POLYGON_BOXES ? kBoxShape : kAnyShape));
}

void palcre3_(int32_t* handle, const char* coverage, const char* subclass, const int32_t*,
              int32_t* status, int32_t coverageLength, int32_t subclassLength) {
    enterWriter(handle, status,
                createFeatures(qx::textArgument(coverage, coverageLength), kRegionCode, kAnyShape,
                               qx::textArgument(subclass, subclassLength)));
}

void palwtx_(const int32_t* handle, const int32_t*, const int32_t*, const double* box,
             const int32_t* arcCount, const int32_t* list) {
    FeatureFile* file = findWritten(handle);
    const int32_t* words = nullptr;
    int32_t listed = 0;
    memptr_(list, &words, &listed);
    if (!file) return;
    const bool boxes = file->writer->header().recordBytes != 0;
    const int32_t kept = boxes ? 0 : std::clamp(*arcCount, 0, listed);
    writePolygon(*file, std::span<const double, 4>(box, 4), boxes ? *arcCount : kept,
                 {words, static_cast<std::size_t>(kept) * kTripletWords});
}

void palwt_(const int32_t* handle, const int32_t*, const void* record) {
    FeatureFile* file = findWritten(handle);
    if (!file) return;
    QxPolygon polygon;
    std::memcpy(&polygon, record, sizeof polygon);
    const bool boxes = file->writer->header().recordBytes != 0;
    const int32_t kept = boxes ? 0 : std::max(polygon.arcCount, 0);
    const auto* arcs = reinterpret_cast<const int32_t*>(static_cast<const QxPolygon*>(record) + 1);
    writePolygon(*file, polygon.box, boxes ? polygon.arcCount : kept,
                 {arcs, static_cast<std::size_t>(kept) * kTripletWords});
}

void palcls_(const int32_t* handle) { featureFiles().close(*handle); }

void palopn_(int32_t* handle, const char* coverageOrPath, const int32_t*, const int32_t* kind,
             int32_t* status, int32_t length) {
    const std::string_view name = qx::textArgument(coverageOrPath, length);
    auto reader = *kind == QX_POLYGON_PATH ? openPath(name) : openFeatures(name, codeOf(*kind));
    // Counted now, since counting later would take away what is left of the record at hand.
    if (reader) reader->count();
    enterReader(handle, status, std::move(reader));
}

void palrec_(const int32_t* handle, int32_t* count) { countRecords(handle, count); }

void palpos_(const int32_t* handle, const int32_t* record, int32_t* status) {
    if (FeatureFile* file = featureFiles().find(*handle)) file->unread = {};
    goToRecord(handle, record, status);
}

void palrd_(const int32_t* handle, int32_t* number, QxPolygon* polygon, int32_t* arcs,
            const int32_t* room, int32_t* status) {
    *status = kEnd;
    FeatureFile* file = featureFiles().find(*handle);
    std::span<const std::byte> record;
    if (!file || !file->reader) return;
    file->unread = {};
    const int32_t realBytes = file->coordinateBytes();
    const auto fixedBytes = static_cast<std::size_t>(kBoxShape.bytes(realBytes));
    if (!file->reader->next(record)) return;
    if (record.size() < fixedBytes) return file->reader->noteDamage();
    double box[4];
    const std::byte* place = getCoordinates(record.data(), box, realBytes);
    polygon->arcCount = store::get<int32_t>(place);
    std::memcpy(polygon->box, box, sizeof box);
    if (file->reader->header().recordBytes == 0) {
        const auto arcBytes = record.subspan(fixedBytes);
        const auto count = static_cast<std::size_t>(std::max(polygon->arcCount, 0));
        if (arcBytes.size() != count * kTripletBytes) return file->reader->noteDamage();
        file->unread = arcBytes;
    }
    *number = static_cast<int32_t>(file->reader->number());
    takeArcs(*file, arcs, *room);
    *status = kSuccess;
}

void palrdm_(const int32_t* handle, int32_t* arcs, const int32_t* room, int32_t* count) {
    FeatureFile* file = featureFiles().find(*handle);
    *count = file ? takeArcs(*file, arcs, *room) : 0;
}

void pffexi_(const char* coverage, int32_t* flag, int32_t coverageLength) {
    *flag = openFeatures(qx::textArgument(coverage, coverageLength), kPolygonBoxCode) ? 1 : 0;
}
