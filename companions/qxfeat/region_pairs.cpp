#include "host/qxfeat/region_pairs.h"

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/feature_files.h"
#include "host/cpp/fixed_text.h"

namespace {

using namespace qxfeat;

// The number and the pair.
constexpr RecordShape kPairShape{3, 0};
constexpr std::size_t kPairBytes = 12;

}  // namespace

void rxpcre_(int32_t* handle, const char* coverage, const char* subclass, int32_t* status,
             int32_t coverageLength, int32_t subclassLength) {
    enterWriter(handle, status,
                createFeatures(qx::textArgument(coverage, coverageLength), kRegionPairCode,
                               kPairShape, qx::textArgument(subclass, subclassLength)));
}

void rxpwt_(const int32_t* handle, const int32_t* pair, const int32_t* number, int32_t* status) {
    store::RecordWriter* writer = findWriter(handle);
    *status = kFailed;
    if (!writer) return;
    store::WordWriter(writer->append(kPairBytes)) << *number << pair[0] << pair[1];
    *status = kSuccess;
}

void rxpcls_(const int32_t* handle) { featureFiles().close(*handle); }

void rxpopn_(int32_t* handle, const char* coverage, const char* subclass, int32_t* status,
             int32_t coverageLength, int32_t subclassLength) {
    enterReader(handle, status,
                openFeatures(qx::textArgument(coverage, coverageLength), kRegionPairCode,
                             qx::textArgument(subclass, subclassLength)));
}

void rxprec_(const int32_t* handle, int32_t* count) { countRecords(handle, count); }

void rxprd_(const int32_t* handle, int32_t* number, int32_t* pair, int32_t* status) {
    *status = kEnd;
    int32_t record = 0;
    const std::byte* place = nextRecord(findReader(handle), kPairBytes, &record);
    if (!place) return;
    store::WordReader(place) >> *number >> pair[0] >> pair[1];
    *status = kSuccess;
}

void rxpprl_(const char* coverage, const char* subclass, int32_t* flag, int32_t coverageLength,
             int32_t subclassLength) {
    const auto polygons = openFeatures(qx::textArgument(coverage, coverageLength), kRegionCode,
                                       qx::textArgument(subclass, subclassLength));
    *flag = polygons ? 0 : 1;
}
