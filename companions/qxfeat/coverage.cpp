#include "companions/qxfeat/coverage.h"

#include "companions/qxfeat/state.h"
#include "companions/qxfeat/subclasses.h"
#include "companions/store/member_names.h"
#include "companions/store/open_files.h"
#include "companions/store/words.h"
#include "host/cpp/call.h"
#include "host/qxbase.h"
#include "host/qxfeat/coverages.h"

namespace {

using store::RecordHeader;
using store::RecordReader;
using store::RecordWriter;

constexpr int32_t kFailed = -1;
constexpr int32_t kSingleType = 1;
constexpr int32_t kDoubleType = 2;
// The file that makes a directory a coverage: a record file without records, whose header says how
// coordinates are stored. Its code belongs to no file of features.
constexpr int32_t kCoverageCode = -1;
constexpr std::string_view kCoverageFile = "coverage";

int32_t precision = kDoubleType;

}  // namespace

namespace qxfeat {

int32_t coordinateBytes(const std::string& coverage) {
    auto reader = RecordReader::open(store::joinPath(store::plainPath(coverage), kCoverageFile));
    if (!reader || reader->header().code != kCoverageCode) return 0;
    return reader->header().realBytes;
}

std::unique_ptr<RecordWriter> createFeatures(std::string_view coverage, int32_t code,
                                             RecordShape shape, std::string_view subclass) {
    RecordHeader header;
    header.code = code;
    header.realBytes = coordinateBytes(std::string(coverage));
    header.recordBytes = shape.bytes(header.realBytes);
    header.label = subclass;
    if (header.realBytes == 0) return nullptr;
    const std::string path = store::memberPath(coverage, code, subclass);
    if (hasSubclasses(code) && !store::exists(path) && !noteSubclass(coverage, code, subclass)) {
        return nullptr;
    }
    return RecordWriter::create(path, header, true);
}

std::unique_ptr<RecordReader> openFeatures(std::string_view coverage, int32_t code,
                                           std::string_view subclass) {
    const std::string path = store::memberPath(coverage, code, subclass);
    auto reader = RecordReader::open(path);
    if (reader && reader->header().code == code) return reader;
    if (store::exists(path)) rdfailC(path.c_str(), 0);
    return nullptr;
}

}  // namespace qxfeat

void featinitC() {
    qxfeat::closeFeatures();
    precision = kDoubleType;
    onunwC(store::flushAll);
}

void featendC() {
    qxfeat::closeFeatures();
    qxfeat::closeSubclassWalks();
    qxfeat::closeIndexes();
    qxfeat::closeTables();
    qxfeat::closeTableLists();
}

int32_t cval_(const int32_t* selector) {
    constexpr int32_t kPrecision = 2;
    return *selector == kPrecision ? precision : 0;
}

void c32bit_() { precision = kSingleType; }
void c64bit_() { precision = kDoubleType; }

void ccreat_(const char* coverage, int32_t* status, int32_t coverageLength) {
    *status = kFailed;
    const std::string path(store::plainPath(qx::textArgument(coverage, coverageLength)));
    if (path.empty() || !store::makeDirectory(path)) return;
    RecordHeader header;
    header.code = kCoverageCode;
    header.realBytes = precision == kDoubleType ? 8 : 4;
    if (!RecordWriter::create(store::joinPath(path, kCoverageFile), header)) return;
    qx::call(creift_, std::string_view(path), *status);
}

void ctype_(const char* coverage, int32_t* type, int32_t coverageLength) {
    const int32_t bytes =
        qxfeat::coordinateBytes(std::string(qx::textArgument(coverage, coverageLength)));
    *type = bytes == 8 ? kDoubleType : bytes == 4 ? kSingleType : 0;
}
