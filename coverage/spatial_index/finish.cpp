// The second pass over the boxes: the tree is pruned, the entries are sorted by their place in the
// file and written.
#include <array>
#include <exception>
#include <memory>
#include <string>

#include "coverage/spatial_index/build_state.h"
#include "host/qxbase.h"

namespace intake {

namespace {

constexpr int32_t kSortCapacity = 31998;
constexpr std::size_t kSortArea = 128000;
static_assert((kEntryWords + 1) * kSortCapacity <= kSortArea);

// The block being filled. The sort calls back without a pointer of its own.
struct BlockOutput {
    Handle file = 0;
    int32_t block = 2;       // first block of the node whose entries come
    int32_t nextRecord = 2;  // behind the node table
    int32_t entries = 0;
    int64_t written = 0;
    std::exception_ptr thrown;  // by a callback, behind whose caller it goes on
    std::array<int32_t, 2 * kBlockEntries> words{};
};
BlockOutput output;

void writeWords(int32_t* words, int32_t count, int32_t record) {
    call(swi4fn_, words, count, 1, output.file);
    call(VwriteC, output.file, record, words, count);
}

void flushBlock() {
    if (output.entries == 0) return;
    writeWords(output.words.data(), 2 * output.entries, output.nextRecord++);
    output.written += output.entries;
    output.entries = 0;
}

// Gives the sort an entry, its node replaced by the node's first block.
int32_t SPXGET(int32_t* record) noexcept {
    Status status = kSuccess;
    try {
        call(BreadC, indexBuild.scratch, kEntryWords, record, status);
    } catch (...) {
        output.thrown = std::current_exception();
        return kReported;
    }
    if (status == kSuccess) record[0] = indexBuild.counts[static_cast<std::size_t>(record[0])];
    return status;
}

int32_t SPXCMP(const int32_t* first, const int32_t* second) {
    return first[0] < second[0] ? -1 : first[0] > second[0] ? 1 : 0;
}

// Takes the entries in the order of their blocks; block 0 ends them.
void putEntry(const int32_t* record) {
    if (record[0] != output.block) {
        flushBlock();
        output.block = record[0];
        if (record[0] == 0) return;
    }
    const auto at = 2 * static_cast<std::size_t>(output.entries++);
    output.words[at] = record[1];
    output.words[at + 1] = record[2];
    if (output.entries == kBlockEntries) flushBlock();
}

void SPXPUT(const int32_t* record) noexcept {
    try {
        if (!output.thrown) putEntry(record);
    } catch (...) {
        output.thrown = std::current_exception();
    }
}

void SPXSRT(Status& status) {
    const auto area = std::make_unique<int32_t[]>(kSortArea);
    QxSortCounters counters{};
    call(srtfilC, kEntryWords, kSortCapacity, area.get(), SPXGET, SPXCMP, SPXPUT, counters);
    const ScratchEntry end;
    SPXPUT(&end.place);
    if (output.thrown) std::rethrow_exception(output.thrown);
    // An entry that the scratch file could not keep is missed here.
    const bool whole = counters.status == 0 && output.written == indexBuild.added;
    status = whole ? kSuccess : kReported;
}

void writeHeader(bool doublePrecision) {
    std::array<int32_t, 9> words{};
    constexpr int32_t kExtentSides = 4;
    words[0] = indexBuild.recordCount;
    call(swi4fn_, words, 1, 1, output.file);
    std::array<float, kExtentSides> extent = indexBuild.grid.extent();
    if (doublePrecision) {
        std::array<double, kExtentSides> wide;
        std::copy(extent.begin(), extent.end(), wide.begin());
        call(swd8fn_, wide, kExtentSides, 1, output.file);
        std::memcpy(&words[1], wide.data(), sizeof wide);
        call(VheadwC, output.file, words.data(), 9);
    } else {
        call(swr4fn_, extent, kExtentSides, 1, output.file);
        std::memcpy(&words[1], extent.data(), sizeof extent);
        call(VheadwC, output.file, words.data(), 5);
    }
}

}  // namespace

void SPXFIN(const Name& path, int32_t fileCode, bool doublePrecision, Status& status) {
    call(BrewndC, indexBuild.scratch);
    SPXMRG(indexBuild.counts, indexBuild.depth);
    std::vector<NodeEntry> nodes = occupiedNodes(indexBuild.counts);
    SPXORD(indexBuild.counts, indexBuild.depth, nodes);
    output = {};
    const std::string terminated(path.view());
    const int32_t type = doublePrecision ? -fileCode : fileCode;
    call(VcreatC, output.file, terminated.c_str(), type, 2, 1, 2, 0, status);
    if (status == kSuccess) {
        static_assert(sizeof(NodeEntry) == 2 * sizeof(int32_t));
        writeWords(reinterpret_cast<int32_t*>(nodes.data()), static_cast<int32_t>(2 * nodes.size()),
                   1);
        SPXSRT(status);
        writeHeader(doublePrecision);
        Status written = kSuccess;
        call(vstat_, output.file, written);
        if (written != kSuccess) status = kReported;
        call(VcloseC, output.file);
    }
    releaseBuild();
}

}  // namespace intake
