// Sorted runs are spooled to a scratch file and merged, a limited number at a time, so that a merge
// gets by with the caller's area however many runs there are.
#include "host/qxbase/sort.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

#include "companions/qxbase/scratch_file.h"

namespace {

using qxbase::ScratchFile;

constexpr std::size_t kMergedAtOnce = 64;

struct Run {
    int64_t start;    // byte in the scratch file
    int64_t records;  // not yet in the area
};

class Sorter {
  public:
    Sorter(int32_t words, int32_t capacity, int32_t* area, QxSortRead read, QxSortCompare compare,
           QxSortWrite write)
        : words_(static_cast<std::size_t>(words)),
          capacity_(static_cast<std::size_t>(capacity)),
          area_(area),
          read_(read),
          compare_(compare),
          write_(write) {}

    QxSortCounters run();

  private:
    int32_t* record(std::size_t index) { return area_ + index * words_; }
    std::size_t fill();
    std::span<int32_t> sort(std::size_t count);
    // Merges a number of runs of the source; each record goes to put.
    template <class Put>
    bool merge(std::span<const Run> runs, ScratchFile& source, Put put);
    bool reduceRuns();

    std::size_t words_;
    std::size_t capacity_;
    int32_t* area_;
    QxSortRead read_;
    QxSortCompare compare_;
    QxSortWrite write_;
    bool inputEnded_ = false;
    std::unique_ptr<ScratchFile> spool_;
    std::vector<Run> runs_;
    QxSortCounters counters_{};
};

std::size_t Sorter::fill() {
    std::size_t count = 0;
    while (count < capacity_ && !inputEnded_) {
        if (read_(record(count)) == 0) {
            ++count;
        } else {
            inputEnded_ = true;
        }
    }
    counters_.records += static_cast<int64_t>(count);
    return count;
}

// The order of the records in the area, as their indexes, which lie behind the records.
std::span<int32_t> Sorter::sort(std::size_t count) {
    const std::span<int32_t> order(area_ + capacity_ * words_, count);
    for (std::size_t index = 0; index < count; ++index) order[index] = static_cast<int32_t>(index);
    std::sort(order.begin(), order.end(), [&](int32_t first, int32_t second) {
        const int32_t result = compare_(record(static_cast<std::size_t>(first)),
                                        record(static_cast<std::size_t>(second)));
        return result != 0 ? result < 0 : first < second;
    });
    return order;
}

template <class Put>
bool Sorter::merge(std::span<const Run> runs, ScratchFile& source, Put put) {
    // Each run has an equal part of the area as its buffer.
    struct Head {
        Run rest;
        int32_t* buffer;
        std::size_t held = 0;
        std::size_t next = 0;
    };
    const std::size_t room = capacity_ / runs.size();
    std::vector<Head> heads;
    for (const Run& run : runs) heads.push_back({run, record(heads.size() * room)});
    const auto refill = [&](Head& head) {
        head.next = 0;
        head.held = static_cast<std::size_t>(
            std::min<int64_t>(head.rest.records, static_cast<int64_t>(room)));
        const std::span<int32_t> words(head.buffer, head.held * words_);
        if (head.held != 0 && !source.read(head.rest.start, std::as_writable_bytes(words))) {
            return false;
        }
        head.rest.start += static_cast<int64_t>(words.size_bytes());
        head.rest.records -= static_cast<int64_t>(head.held);
        return true;
    };
    const auto current = [&](std::size_t head) {
        return heads[head].buffer + heads[head].next * words_;
    };
    // A heap of runs, the one with the first record on top; equal records in the order of the runs.
    const auto behind = [&](std::size_t first, std::size_t second) {
        const int32_t result = compare_(current(first), current(second));
        return result != 0 ? result > 0 : first > second;
    };
    std::vector<std::size_t> heap;
    for (std::size_t head = 0; head < heads.size(); ++head) {
        if (!refill(heads[head])) return false;
        if (heads[head].held != 0) heap.push_back(head);
    }
    std::make_heap(heap.begin(), heap.end(), behind);
    while (!heap.empty()) {
        std::pop_heap(heap.begin(), heap.end(), behind);
        Head& head = heads[heap.back()];
        put(current(heap.back()));
        if (++head.next == head.held && !refill(head)) return false;
        if (head.held == 0) {
            heap.pop_back();
        } else {
            std::push_heap(heap.begin(), heap.end(), behind);
        }
    }
    return true;
}

// Merges groups of runs into longer ones until one merge can take them all.
bool Sorter::reduceRuns() {
    while (runs_.size() > kMergedAtOnce) {
        auto target = ScratchFile::create();
        if (!target) return false;
        std::vector<Run> longer;
        for (std::size_t first = 0; first < runs_.size(); first += kMergedAtOnce) {
            const std::span<const Run> group(runs_.data() + first,
                                             std::min(kMergedAtOnce, runs_.size() - first));
            Run run{target->size(), 0};
            const bool sound = merge(group, *spool_, [&](const int32_t* record) {
                target->append(std::as_bytes(std::span(record, words_)));
                ++run.records;
            });
            if (!sound) return false;
            longer.push_back(run);
        }
        spool_ = std::move(target);
        runs_ = std::move(longer);
    }
    return true;
}

QxSortCounters Sorter::run() {
    counters_.status = -1;
    for (;;) {
        const std::size_t count = fill();
        const std::span<const int32_t> order = sort(count);
        if (inputEnded_ && runs_.empty()) {
            for (const int32_t index : order) write_(record(static_cast<std::size_t>(index)));
            counters_.status = 0;
            return counters_;
        }
        if (count != 0) {
            if (!spool_) spool_ = ScratchFile::create();
            if (!spool_) return counters_;
            runs_.push_back({spool_->size(), static_cast<int64_t>(count)});
            for (const int32_t index : order) {
                const int32_t* words = record(static_cast<std::size_t>(index));
                spool_->append(std::as_bytes(std::span(words, words_)));
            }
        }
        if (inputEnded_) break;
    }
    counters_.runs = static_cast<int64_t>(runs_.size());
    if (reduceRuns() && merge(runs_, *spool_, write_)) counters_.status = 0;
    return counters_;
}

}  // namespace

void srtfilC(const int32_t* words, const int32_t* capacity, int32_t* area, QxSortRead read,
             QxSortCompare compare, QxSortWrite write, QxSortCounters* counters) {
    constexpr int32_t kLeastCapacity = 128;
    *counters = {0, 0, -1};
    if (*words < 1 || *capacity < kLeastCapacity) return;
    *counters = Sorter(*words, *capacity, area, read, compare, write).run();
}
