// Sorts any number of small plain values by a number in bounded memory: what does not fit waits in
// a file that has no name.
#ifndef FORMATS_GEOPACKAGE_SORTER_H
#define FORMATS_GEOPACKAGE_SORTER_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <queue>
#include <span>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "formats/scratch.h"

namespace formats::geopackage {

template <class Entry>
class Sorter {
    static_assert(std::is_trivially_copyable_v<Entry>);

  public:
    // Where a file would be made, and whose name failures have.
    Sorter(std::string path, std::string target)
        : path_(std::move(path)), target_(std::move(target)) {}

    void add(const Entry& entry) {
        if (entries_.size() == kRun) spill();
        entries_.push_back({0, entry});
    }
    std::size_t size() const { return spilled_ + entries_.size(); }

    // Calls keyOf for each entry, and then give for each in ascending order of its key, those with
    // equal keys as they came. Once only.
    template <class KeyOf, class Give>
    void sort(KeyOf keyOf, Give give);

  private:
    struct Keyed {
        uint64_t key;
        Entry entry;
    };
    // A sorted run in the file, a piece of which is in memory.
    struct Run {
        std::size_t next;
        std::size_t end;
        std::vector<Keyed> piece;
        std::size_t at = 0;

        uint64_t key() const { return piece[at].key; }
    };

    void spill();
    template <class KeyOf>
    void sortInMemory(KeyOf keyOf);
    template <class Give>
    void merge(Give give);
    bool advance(Run& run);
    void writeAt(std::size_t first, const std::vector<Keyed>& entries) {
        scratch_->write(static_cast<int64_t>(first * sizeof(Keyed)),
                        std::as_bytes(std::span(entries)));
    }
    void readAt(std::size_t first, std::vector<Keyed>& entries) {
        scratch_->read(static_cast<int64_t>(first * sizeof(Keyed)),
                       std::as_writable_bytes(std::span(entries)));
    }

    static constexpr std::size_t kRun = (std::size_t{4} << 20) / sizeof(Keyed);
    static constexpr std::size_t kPiece = 512;

    std::string path_;
    std::string target_;
    std::vector<Keyed> entries_;
    std::size_t spilled_ = 0;
    std::unique_ptr<Scratch> scratch_;
};

template <class Entry>
void Sorter<Entry>::spill() {
    if (!scratch_) scratch_ = std::make_unique<Scratch>(path_, target_);
    writeAt(spilled_, entries_);
    spilled_ += entries_.size();
    entries_.clear();
}

// By one byte of the key after the other, from the last, but for bytes that all have in common.
template <class Entry>
template <class KeyOf>
void Sorter<Entry>::sortInMemory(KeyOf keyOf) {
    constexpr std::size_t kBytes = sizeof(uint64_t);
    std::array<std::array<std::size_t, 256>, kBytes> counts{};
    for (Keyed& each : entries_) {
        each.key = keyOf(each.entry);
        for (std::size_t byte = 0; byte < kBytes; ++byte) {
            ++counts[byte][each.key >> (8 * byte) & 0xff];
        }
    }
    std::vector<Keyed> sorted(entries_.size());
    for (std::size_t byte = 0; byte < kBytes; ++byte) {
        if (std::ranges::find(counts[byte], entries_.size()) != counts[byte].end()) continue;
        std::size_t start = 0;
        for (std::size_t& count : counts[byte]) start += std::exchange(count, start);
        for (const Keyed& each : entries_) {
            sorted[counts[byte][each.key >> (8 * byte) & 0xff]++] = each;
        }
        entries_.swap(sorted);
    }
}

template <class Entry>
template <class KeyOf, class Give>
void Sorter<Entry>::sort(KeyOf keyOf, Give give) {
    if (!scratch_) {
        sortInMemory(keyOf);
        for (const Keyed& each : entries_) give(each.entry);
        entries_ = {};
        return;
    }
    // Each run is sorted where it lies, and then all are merged.
    spill();
    for (std::size_t first = 0; first < spilled_; first += kRun) {
        entries_.resize(std::min(kRun, spilled_ - first));
        readAt(first, entries_);
        sortInMemory(keyOf);
        writeAt(first, entries_);
    }
    entries_ = {};
    merge(give);
    scratch_.reset();
}

template <class Entry>
template <class Give>
void Sorter<Entry>::merge(Give give) {
    std::vector<Run> runs;
    for (std::size_t first = 0; first < spilled_; first += kRun) {
        runs.push_back({first, std::min(first + kRun, spilled_), {}});
    }
    // The run with the least entry is on top; of equal ones that which came first.
    const auto later = [](const Run* one, const Run* other) {
        return one->key() != other->key() ? one->key() > other->key() : one > other;
    };
    std::priority_queue<Run*, std::vector<Run*>, decltype(later)> queue(later);
    for (Run& run : runs) {
        if (advance(run)) queue.push(&run);
    }
    while (!queue.empty()) {
        Run* run = queue.top();
        queue.pop();
        give(run->piece[run->at].entry);
        if (advance(*run)) queue.push(run);
    }
}

template <class Entry>
bool Sorter<Entry>::advance(Run& run) {
    if (run.at + 1 < run.piece.size()) {
        ++run.at;
        return true;
    }
    run.piece.resize(std::min(kPiece, run.end - run.next));
    run.at = 0;
    if (run.piece.empty()) return false;
    readAt(run.next, run.piece);
    run.next += run.piece.size();
    return true;
}

}  // namespace formats::geopackage

#endif
