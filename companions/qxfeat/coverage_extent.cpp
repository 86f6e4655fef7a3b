// The extent of a coverage, from its features.
#include <algorithm>
#include <vector>

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/extent.h"
#include "companions/qxfeat/feature_files.h"
#include "companions/qxfeat/subclasses.h"
#include "host/cpp/fixed_text.h"
#include "host/qxfeat/coverages.h"

namespace {

using namespace qxfeat;

// Where the places of a feature stand in its record: behind so many words, and how many coordinates
// they are; 0 for all that is left.
struct Places {
    int32_t code;
    std::size_t words;
    std::size_t coordinates;
};

// In the order in which they are asked. The features of the first file that knows an extent give
// it.
constexpr Places kPlaces[] = {
    {kArcCode, 7, 0},    {kLabelCode, 2, 2},      {kPolygonCode, 0, 4}, {kPolygonBoxCode, 0, 4},
    {kRegionCode, 0, 4}, {kAnnotationCode, 0, 0}, {kLinkCode, 0, 4},    {kCentroidCode, 0, 2},
};

// Of a file whose header does not say, because it was cut off: by going through it. Annotation has
// its extent in the header or none.
Extent extentOfRecords(store::RecordReader& reader, const Places& places) {
    Extent extent;
    if (places.code == kAnnotationCode) return extent;
    const auto realBytes = static_cast<std::size_t>(reader.header().realBytes);
    const std::size_t front = places.words * 4;
    std::vector<double> values;
    std::span<const std::byte> record;
    while (reader.next(record)) {
        if (record.size() < front + places.coordinates * realBytes) break;
        values.resize(places.coordinates != 0 ? places.coordinates
                                              : (record.size() - front) / realBytes);
        getCoordinates(record.data() + front, values, static_cast<int32_t>(realBytes));
        extent.include(values);
    }
    return extent;
}

void addFile(std::string_view coverage, const Places& places, std::string_view subclass,
             Extent& extent) {
    auto reader = openFeatures(coverage, places.code, subclass);
    if (!reader) return;
    Extent found;
    const bool whole = reader->header().count >= 0;
    if (!whole || !headerExtent(reader->header(), found)) {
        found = extentOfRecords(*reader, places);
    }
    if (!found.known()) return;
    const double corners[] = {found.xMin, found.yMin, found.xMax, found.yMax};
    extent.include(corners);
}

}  // namespace

void boxget_(const char* coverage, double* box, int32_t* status, int32_t coverageLength) {
    const std::string path(qx::textArgument(coverage, coverageLength));
    *status = kFailed;
    for (const Places& places : kPlaces) {
        Extent extent;
        if (hasSubclasses(places.code)) {
            for (const std::string& name : subclassesOf(path, places.code, places.code)) {
                addFile(path, places, name, extent);
            }
        } else {
            addFile(path, places, {}, extent);
        }
        if (!extent.known()) continue;
        box[0] = extent.xMin;
        box[1] = extent.yMin;
        box[2] = extent.xMax;
        box[3] = extent.yMax;
        *status = kSuccess;
        return;
    }
}
