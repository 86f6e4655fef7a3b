// The open files of features, of all kinds in one table.
#ifndef COMPANIONS_QXFEAT_FEATURE_FILES_H
#define COMPANIONS_QXFEAT_FEATURE_FILES_H

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "companions/qxfeat/extent.h"
#include "companions/store/handle_table.h"
#include "companions/store/record_file.h"
#include "companions/store/words.h"

namespace qxfeat {

// Statuses of opening and reading.
inline constexpr int32_t kSuccess = 0;
inline constexpr int32_t kFailed = -1;
inline constexpr int32_t kEnd = -1;
inline constexpr int32_t kNoRoom = 1;

struct FeatureFile {
    std::unique_ptr<store::RecordWriter> writer;
    std::unique_ptr<store::RecordReader> reader;
    Extent extent;                      // of what was written
    bool keepsExtent = false;           // false behind records whose extent is not known
    std::span<const std::byte> unread;  // what is left of the record that was read last

    // Takes the points of a feature that is written into the extent, given as pairs x, y.
    void include(std::span<const double> pairs) {
        if (keepsExtent && extent.include(pairs)) {
            writer->setHost(extentWords(extent, writer->header().realBytes));
        }
    }
    int32_t coordinateBytes() const {
        return writer ? writer->header().realBytes : reader->header().realBytes;
    }
};

store::HandleTable<FeatureFile>& featureFiles();

// Enters a file and gives its handle and status 0, or with null status kFailed and no handle.
void enterWriter(int32_t* handle, int32_t* status, std::unique_ptr<store::RecordWriter> writer);
void enterReader(int32_t* handle, int32_t* status, std::unique_ptr<store::RecordReader> reader);

// The file of a handle that was opened for writing; its writer; its reader. Null for any other
// number.
FeatureFile* findWritten(const int32_t* handle);
store::RecordWriter* findWriter(const int32_t* handle);
store::RecordReader* findReader(const int32_t* handle);

// What every kind of feature has: the number of its records, and going to one of them.
void countRecords(const int32_t* handle, int32_t* count);
void goToRecord(const int32_t* handle, const int32_t* record, int32_t* status);

// The next record, if it has so many bytes, and its number; null at the end, without a reader, and
// for a record of any other length.
const std::byte* nextRecord(store::RecordReader* reader, std::size_t bytes, int32_t* number);

// Writes a record of a front, coordinates in pairs x, y, integers and a text, one behind the other.
struct RecordParts {
    std::span<const std::byte> front;
    std::span<const double> coordinates;
    std::span<const int32_t> integers;
    std::string_view text;
};
void appendRecord(FeatureFile& file, const RecordParts& parts);

// The box of stored pairs x, y, as boxfd2_ has it.
void boxOfStored(std::span<const std::byte> pairs, int32_t realBytes, double* box);

// Coordinates in the file's precision.
std::byte* putCoordinates(std::byte* place, std::span<const double> values, int32_t bytes);
const std::byte* getCoordinates(const std::byte* place, std::span<double> values, int32_t bytes);

}  // namespace qxfeat

#endif
