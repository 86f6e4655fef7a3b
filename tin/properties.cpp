#include "tin/properties.h"

#include <cstring>

#include "tin/layer.h"
#include "tin/open_surfaces.h"

namespace intake {

namespace {

// Where a property lies in the environment that is plain memory there.
struct Place {
    void* address = nullptr;
    std::size_t bytes = 0;
};

Place placeOf(TINENV& environment, int32_t kind) {
    switch (kind) {
        case kNodeCount:
            return {&environment.nodeCount, 4};
        case kTriangleCount:
            return {&environment.triangleCount, 4};
        case kHullCount:
            return {&environment.hullCount, 4};
        case kBox:
            return {&environment.box, sizeof environment.box};
        case kFifthReal:
            return {&environment.fifthReal, 8};
        case kSixthReal:
            return {&environment.sixthReal, 8};
        case kSecondTriangleCount:
            return {&environment.secondTriangleCount, 4};
        case kSecondNodeCount:
            return {&environment.secondNodeCount, 4};
        case kSecondHullCount:
            return {&environment.secondHullCount, 4};
        default:
            return {};
    }
}

// The property that stands in for one that is 0; 0 for none.
int32_t standIn(int32_t kind) {
    if (kind == kHullCount) return kSecondHullCount;
    if (kind == kSecondTriangleCount) return kTriangleCount;
    if (kind == kSecondNodeCount) return kNodeCount;
    return 0;
}

}  // namespace

void tifget(int32_t kind, void* value) {
    Tin* tin = currentTin();
    if (!tin) return;
    const auto give = [&](float real) { std::memcpy(value, &real, sizeof real); };
    if (kind == kLowestZ) return give(tin->zRange().lowest);
    if (kind == kHighestZ) return give(tin->zRange().highest);
    if (kind == kNoDataZ) return give(noDataZ());
    if (kind == kFormatVersion) return give(realVersion(tin->version));
    Place place = placeOf(tin->environment, kind);
    if (const int32_t other = standIn(kind); other != 0) {
        int32_t count = 0;
        std::memcpy(&count, place.address, sizeof count);
        if (count == 0) place = placeOf(tin->environment, other);
    }
    if (place.address) std::memcpy(value, place.address, place.bytes);
}

void tifset(const void* value, int32_t kind) {
    Tin* tin = currentTin();
    if (!tin) return;
    if (kind == kLowestZ || kind == kHighestZ) {
        ZRange range = tin->zRange();
        float& half = kind == kLowestZ ? range.lowest : range.highest;
        std::memcpy(&half, value, sizeof half);
        tin->setZRange(range);
        return;
    }
    const Place place = placeOf(tin->environment, kind);
    if (place.address) std::memcpy(place.address, value, place.bytes);
}

}  // namespace intake
