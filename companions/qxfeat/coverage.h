// What a coverage is on disk, and the files of features inside it.
#ifndef COMPANIONS_QXFEAT_COVERAGE_H
#define COMPANIONS_QXFEAT_COVERAGE_H

#include <memory>
#include <string>
#include <string_view>

#include "companions/store/record_file.h"

namespace qxfeat {

// Bytes of a stored coordinate, 4 or 8; 0 if the path is no coverage.
int32_t coordinateBytes(const std::string& coverage);

// A record of so many 32-bit words and coordinates; without either records are of any length.
struct RecordShape {
    int32_t words = 0;
    int32_t coordinates = 0;

    constexpr int32_t bytes(int32_t coordinateBytes) const {
        return words * 4 + coordinates * coordinateBytes;
    }
};
inline constexpr RecordShape kAnyShape{};

// File codes of features.
inline constexpr int32_t kArcCode = 1;
inline constexpr int32_t kLabelCode = 2;
inline constexpr int32_t kPolygonCode = 11;
inline constexpr int32_t kCentroidCode = 14;
inline constexpr int32_t kAnnotationCode = 16;
inline constexpr int32_t kPolygonBoxCode = 29;
inline constexpr int32_t kLinkCode = 36;
inline constexpr int32_t kRegionPairCode = 89;
inline constexpr int32_t kRegionCode = 90;

// A feature file of a coverage, open for writing behind what it holds. Null if the coverage is
// none or the file does not open. A file of a code that has subclasses is noted in the coverage's
// list of subclasses when it is made.
std::unique_ptr<store::RecordWriter> createFeatures(std::string_view coverage, int32_t code,
                                                    RecordShape shape,
                                                    std::string_view subclass = {});

// The same for reading; null if there is none.
std::unique_ptr<store::RecordReader> openFeatures(std::string_view coverage, int32_t code,
                                                  std::string_view subclass = {});

}  // namespace qxfeat

#endif
