#include "host/qxfeat/index.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "companions/qxfeat/feature_files.h"
#include "companions/qxfeat/state.h"
#include "companions/store/member_names.h"
#include "host/cpp/fixed_text.h"

namespace {

using namespace qxfeat;

constexpr int32_t kNodeTable = 1;  // record of the file
constexpr int32_t kBlockEntries = 100;
constexpr int32_t kCells = 256;
constexpr std::size_t kPairBytes = 8;

struct Cells {
    int32_t xMin;
    int32_t yMin;
    int32_t xMax;
    int32_t yMax;
    bool meets(const Cells& other) const {
        return xMin <= other.xMax && other.xMin <= xMax && yMin <= other.yMax && other.yMin <= yMax;
    }
};

Cells unpack(int32_t packed) {
    const auto word = static_cast<uint32_t>(packed);
    const auto byte = [&](int shift) { return static_cast<int32_t>(word >> shift & 255U); };
    return {byte(24), byte(16), byte(8), byte(0)};
}

struct Node {
    int32_t firstBlock = 0;
    int32_t entryCount = 0;
};

struct Index {
    std::unique_ptr<store::RecordReader> file;
    int32_t recordCount = 0;
    std::array<double, 4> extent{};
    std::vector<Node> nodes;
    int32_t blocks = 0;

    std::vector<int32_t> found;
    std::size_t next = 0;
    bool whole = true;  // whether every block that was wanted could be read

    bool readHeader();
    bool readNodes();
    bool block(int32_t number, std::vector<int32_t>& entries);
    Cells map(const double* box) const;
    void ask(const Cells& wanted);
};

store::HandleTable<Index>& indexes() {
    static store::HandleTable<Index> table;
    return table;
}

int32_t fileCode(int32_t kind) { return kind == QX_INDEX_REGIONS ? 93 : 45 + kind; }

bool Index::readHeader() {
    const store::RecordHeader& header = file->header();
    store::WordReader words(header.host.data());
    words >> recordCount;
    const auto bounds = [&](auto bound) {
        for (double& side : extent) {
            words >> bound;
            side = bound;
        }
    };
    // A single-precision coverage has its bounds in 32 bits, a double-precision one in 64.
    if (header.hostBytes == 20 && header.code > 0) {
        bounds(0.0F);
    } else if (header.hostBytes == 36 && header.code < 0) {
        bounds(0.0);
    } else {
        return false;
    }
    // Bounds the wrong way round would map rectangles backwards.
    return recordCount >= 0 && extent[0] <= extent[2] && extent[1] <= extent[3];
}

bool Index::readNodes() {
    constexpr std::size_t kMostNodes = 131071;
    std::span<const std::byte> record;
    if (!file->seek(kNodeTable) || !file->next(record)) return false;
    if (record.size() % kPairBytes != 0 || record.size() / kPairBytes > kMostNodes) return false;
    nodes.resize(record.size() / kPairBytes);
    store::WordReader words(record.data());
    for (Node& node : nodes) words >> node.firstBlock >> node.entryCount;
    blocks = static_cast<int32_t>(file->count()) - 1;
    return true;
}

bool Index::block(int32_t number, std::vector<int32_t>& entries) {
    std::span<const std::byte> record;
    entries.clear();
    if (number <= kNodeTable || !file->seek(number) || !file->next(record)) return false;
    if (record.size() % kPairBytes != 0 || record.size() > kBlockEntries * kPairBytes) return false;
    entries.resize(record.size() / sizeof(int32_t));
    store::getAll(record.data(), std::span<int32_t>(entries));
    return true;
}

// As the builder maps the boxes of features, so that what meets in the coverage meets here.
Cells Index::map(const double* box) const {
    static constexpr double kLast = kCells - 1;
    const auto scale = [&](std::size_t side) {
        const double width = extent[side + 2] - extent[side];
        return double{static_cast<float>(width == 0 ? kLast : kLast / width)};
    };
    const auto cell = [](double place) {
        return place > 0 ? static_cast<int32_t>(std::min(place, kLast)) : 0;
    };
    const double xScale = scale(0);
    const double yScale = scale(1);
    return {cell((box[0] - extent[0]) * xScale), cell((box[1] - extent[1]) * yScale),
            cell((box[2] - extent[0]) * xScale + 1), cell((box[3] - extent[1]) * yScale + 1)};
}

void Index::ask(const Cells& wanted) {
    struct Visit {
        std::size_t node;
        Cells range;
        bool halvesX;
    };
    found.clear();
    next = 0;
    whole = true;
    // Each block is looked at once, whatever a damaged node table says.
    std::vector<bool> seen(static_cast<std::size_t>(blocks) + 2);
    std::vector<int32_t> entries;
    std::vector<Visit> visits;
    if (!nodes.empty()) visits.push_back({1, {0, 0, kCells, kCells}, true});
    while (!visits.empty()) {
        const Visit visit = visits.back();
        visits.pop_back();
        const Node node = nodes[visit.node - 1];
        const int64_t count = node.entryCount > 0 ? (int64_t{node.entryCount} - 1) / 100 + 1 : 0;
        if (count > 0 &&
            (node.firstBlock <= kNodeTable || node.firstBlock + count > int64_t{blocks} + 2)) {
            whole = false;
        } else {
            for (int64_t each = 0; each < count; ++each) {
                const auto number = static_cast<int32_t>(node.firstBlock + each);
                if (seen[static_cast<std::size_t>(number)]) continue;
                seen[static_cast<std::size_t>(number)] = true;
                whole &= block(number, entries);
                for (std::size_t at = 0; at + 1 < entries.size(); at += 2) {
                    const int32_t record = entries[at + 1];
                    if (unpack(entries[at]).meets(wanted)) found.push_back(record);
                }
            }
        }
        // Boxes of the upper half begin above its middle, those of the lower half end there.
        const Cells& range = visit.range;
        const int32_t middle =
            visit.halvesX ? (range.xMin + range.xMax) / 2 : (range.yMin + range.yMax) / 2;
        Cells upper = range;
        Cells lower = range;
        (visit.halvesX ? upper.xMin : upper.yMin) = middle;
        (visit.halvesX ? lower.xMax : lower.yMax) = middle;
        const std::size_t child = 2 * visit.node;
        if (child <= nodes.size() && (visit.halvesX ? wanted.xMax : wanted.yMax) > middle) {
            visits.push_back({child, upper, !visit.halvesX});
        }
        if (child + 1 <= nodes.size() && (visit.halvesX ? wanted.xMin : wanted.yMin) <= middle) {
            visits.push_back({child + 1, lower, !visit.halvesX});
        }
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
}

}  // namespace

namespace qxfeat {

void closeIndexes() { indexes().closeAll(); }

}  // namespace qxfeat

void spxopn_(int32_t* handle, const char* coverage, const char* subclass, const int32_t* kind,
             int32_t* status, int32_t coverageLength, int32_t subclassLength) {
    *status = kFailed;
    if (*kind < QX_INDEX_POINTS || *kind > QX_INDEX_REGIONS) return;
    const int32_t code = fileCode(*kind);
    auto index = std::make_unique<Index>();
    index->file = store::RecordReader::open(
        store::memberPath(qx::textArgument(coverage, coverageLength), code,
                          qx::textArgument(subclass, subclassLength)));
    if (!index->file || std::abs(int64_t{index->file->header().code}) != code) return;
    if (!index->readHeader() || !index->readNodes()) return;
    *handle = indexes().add(std::move(index));
    *status = kSuccess;
}

void spxcls_(const int32_t* handle) { indexes().close(*handle); }

void spxhdr_(const int32_t* handle, int32_t* recordCount, double* extent, int32_t* nodes,
             int32_t* blocks) {
    const Index* index = indexes().find(*handle);
    *recordCount = index ? index->recordCount : 0;
    *nodes = index ? static_cast<int32_t>(index->nodes.size()) : 0;
    *blocks = index ? index->blocks : 0;
    for (std::size_t side = 0; side < 4; ++side) extent[side] = index ? index->extent[side] : 0;
}

void spxnod_(const int32_t* handle, const int32_t* node, int32_t* firstBlock, int32_t* entryCount) {
    const Index* index = indexes().find(*handle);
    const bool there =
        index && *node >= 1 && static_cast<std::size_t>(*node) <= index->nodes.size();
    const Node found = there ? index->nodes[static_cast<std::size_t>(*node) - 1] : Node{};
    *firstBlock = found.firstBlock;
    *entryCount = found.entryCount;
}

void spxblk_(const int32_t* handle, const int32_t* block, int32_t* entries, int32_t* count,
             int32_t* status) {
    *count = 0;
    *status = kFailed;
    Index* index = indexes().find(*handle);
    std::vector<int32_t> words;
    if (!index || !index->block(*block, words)) return;
    std::copy(words.begin(), words.end(), entries);
    *count = static_cast<int32_t>(words.size() / 2);
    *status = kSuccess;
}

void spxask_(const int32_t* handle, const double* box, int32_t* count, int32_t* status) {
    *count = 0;
    *status = kFailed;
    Index* index = indexes().find(*handle);
    if (!index) return;
    index->ask(index->map(box));
    *count = static_cast<int32_t>(index->found.size());
    if (index->whole) *status = kSuccess;
}

void spxnxt_(const int32_t* handle, int32_t* record, int32_t* status) {
    *status = kEnd;
    Index* index = indexes().find(*handle);
    if (!index || index->next == index->found.size()) return;
    *record = index->found[index->next++];
    *status = kSuccess;
}
