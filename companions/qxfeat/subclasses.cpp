#include "companions/qxfeat/subclasses.h"

#include <unordered_set>

#include "companions/qxfeat/coverage.h"
#include "companions/qxfeat/feature_files.h"
#include "companions/qxfeat/state.h"
#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"
#include "host/qxfeat/subclasses.h"

namespace {

using namespace qxfeat;
using store::RecordHeader;

constexpr std::string_view kListFile = "subclasses";
// Belongs to no file of features.
constexpr int32_t kListCode = -2;
constexpr std::size_t kNameBytes = RecordHeader::kLabelBytes;
constexpr std::size_t kEntryBytes = 4 + kNameBytes;
// What a walk keeps of each comes to a few megabytes.
constexpr int64_t kMostSubclasses = 65536;

struct Walk {
    std::vector<std::string> names;
    std::size_t next = 0;
};

store::HandleTable<Walk>& walks() {
    static store::HandleTable<Walk> table;
    return table;
}

std::string listPath(std::string_view coverage) {
    return store::joinPath(store::plainPath(coverage), kListFile);
}

}  // namespace

namespace qxfeat {

void closeSubclassWalks() { walks().closeAll(); }

bool hasSubclasses(int32_t code) {
    return code == kAnnotationCode || code == kRegionPairCode || code == kRegionCode;
}

bool noteSubclass(std::string_view coverage, int32_t code, std::string_view subclass) {
    // A longer name would come back as another one.
    if (subclass.size() > kNameBytes) return false;
    RecordHeader header;
    header.code = kListCode;
    header.recordBytes = static_cast<int32_t>(kEntryBytes);
    auto writer = store::RecordWriter::create(listPath(coverage), header, true);
    if (!writer || writer->count() >= kMostSubclasses) return false;
    std::byte* place = writer->append(kEntryBytes);
    store::put(place, code);
    qx::padText(reinterpret_cast<char*>(place) + 4, kNameBytes, subclass);
    writer->close();
    return !writer->failed();
}

std::vector<std::string> subclassesOf(std::string_view coverage, int32_t firstCode,
                                      int32_t secondCode) {
    std::vector<std::string> names;
    auto reader = store::RecordReader::open(listPath(coverage));
    if (!reader || reader->header().code != kListCode) return names;
    std::unordered_set<std::string> seen;
    std::span<const std::byte> entry;
    while (reader->number() < kMostSubclasses && reader->next(entry) &&
           entry.size() == kEntryBytes) {
        const auto code = store::get<int32_t>(entry.data());
        if (!hasSubclasses(code) || (code != firstCode && code != secondCode)) continue;
        std::string name(qx::trimText(reinterpret_cast<const char*>(entry.data()) + 4, kNameBytes));
        // A name is noted before its file is made, which may have failed.
        if (!store::exists(store::memberPath(coverage, code, name))) continue;
        if (seen.insert(name).second) names.push_back(std::move(name));
    }
    return names;
}

}  // namespace qxfeat

void copen_(int32_t* walk, const char* coverage, const int32_t* firstCode,
            const int32_t* secondCode, int32_t* status, int32_t coverageLength) {
    const std::string path(qx::textArgument(coverage, coverageLength));
    *status = kFailed;
    if (coordinateBytes(path) == 0) return;
    *walk =
        walks().add(std::make_unique<Walk>(Walk{subclassesOf(path, *firstCode, *secondCode), 0}));
    *status = kSuccess;
}

void centry_(const int32_t* walk, char* subclass, int32_t* count, int32_t subclassLength) {
    *count = 0;
    Walk* found = walks().find(*walk);
    if (!found || found->next == found->names.size()) return;
    qx::textResult(subclass, subclassLength, found->names[found->next++]);
    *count = 1;
}

void cclose_(const int32_t* walk) { walks().close(*walk); }
