#include "host/qxfeat/arcs.h"

#include <array>
#include <cstring>

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/feature_files.h"
#include "host/cpp/fixed_text.h"

namespace {

using namespace qxfeat;

// Number, user id, from-node, to-node, left and right polygon, vertex count.
constexpr std::size_t kFixedBytes = 7 * 4;

std::size_t realsOf(int32_t vertexCount) { return static_cast<std::size_t>(vertexCount) * 2; }

// The next arc and its stored vertices; false at the end, and with a note at one that is damaged.
bool readArc(store::RecordReader* reader, int32_t& number, QxArc& arc,
             std::span<const std::byte>& pairs) {
    std::span<const std::byte> record;
    if (!reader || !reader->next(record)) return false;
    if (record.size() < kFixedBytes) {
        reader->noteDamage();
        return false;
    }
    store::WordReader(record.data()) >> number >> arc.userId >> arc.fromNode >> arc.toNode >>
        arc.leftPolygon >> arc.rightPolygon >> arc.vertexCount;
    pairs = record.subspan(kFixedBytes);
    const auto realBytes = static_cast<std::size_t>(reader->header().realBytes);
    if (arc.vertexCount < 0 || pairs.size() != realsOf(arc.vertexCount) * realBytes) {
        reader->noteDamage();
        return false;
    }
    return true;
}

}  // namespace

void arccre_(int32_t* handle, const char* coverage, const int32_t*, const int32_t*, int32_t* status,
             int32_t coverageLength) {
    enterWriter(handle, status,
                createFeatures(qx::textArgument(coverage, coverageLength), kArcCode, kAnyShape));
}

void arcwt_(const int32_t* handle, const int32_t* number, const void* record) {
    FeatureFile* file = findWritten(handle);
    QxArc arc;
    std::memcpy(&arc, record, sizeof arc);
    if (!file || arc.vertexCount < 0) return;
    const std::size_t reals = realsOf(arc.vertexCount);
    const std::span vertices(reinterpret_cast<const double*>(static_cast<const QxArc*>(record) + 1),
                             reals);
    std::array<std::byte, kFixedBytes> front;
    store::WordWriter(front.data()) << *number << arc.userId << arc.fromNode << arc.toNode
                                    << arc.leftPolygon << arc.rightPolygon << arc.vertexCount;
    appendRecord(*file, {front, vertices, {}, {}});
    file->include(vertices);
}

void arccls_(const int32_t* handle) { featureFiles().close(*handle); }

void arcopn_(int32_t* handle, const char* coverage, int32_t* status, int32_t coverageLength) {
    enterReader(handle, status, openFeatures(qx::textArgument(coverage, coverageLength), kArcCode));
}

void arcrec_(const int32_t* handle, int32_t* count) { countRecords(handle, count); }

void arcpos_(const int32_t* handle, const int32_t* record, int32_t* status) {
    goToRecord(handle, record, status);
}

void arcrd_(const int32_t* handle, int32_t* number, QxArc* arc, double* vertices,
            const int32_t* capacity, int32_t* status) {
    *status = kEnd;
    store::RecordReader* reader = findReader(handle);
    std::span<const std::byte> pairs;
    // Fronts alone are read for what they name, and arcs are then asked for by number.
    if (reader && *capacity < 0) reader->keepPlaces();
    if (!readArc(reader, *number, *arc, pairs)) return;
    if (*capacity < 0) {
        *status = kSuccess;
        return;
    }
    if (arc->vertexCount > *capacity) {
        reader->again();
        *status = kNoRoom;
        return;
    }
    getCoordinates(pairs.data(), {vertices, realsOf(arc->vertexCount)}, reader->header().realBytes);
    *status = kSuccess;
}

void arcbox_(const int32_t* handle, double* box, int32_t* status) {
    *status = kEnd;
    store::RecordReader* reader = findReader(handle);
    int32_t number = 0;
    QxArc arc;
    std::span<const std::byte> pairs;
    if (!readArc(reader, number, arc, pairs)) return;
    boxOfStored(pairs, reader->header().realBytes, box);
    *status = kSuccess;
}
