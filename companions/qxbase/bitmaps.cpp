#include "host/qxbase/bitmaps.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "companions/qxbase/scratch_file.h"
#include "companions/qxbase/state.h"
#include "companions/store/handle_table.h"
#include "companions/store/words.h"
#include "host/qxbase/records.h"

namespace {

constexpr int32_t kBitsInWord = 32;

// One page of words is in memory. The others wait in a scratch file, where what was never written
// is zero.
class Bitmap {
  public:
    bool set(int32_t index, bool on) {
        const int64_t word = (index - 1) / kBitsInWord;
        if (!turnTo(word / kPageWords)) return false;
        size_ = std::max(size_, word + 1);
        const uint32_t bit = 0x80000000U >> ((index - 1) % kBitsInWord);
        uint32_t& place = page_[static_cast<std::size_t>(word % kPageWords)];
        place = on ? place | bit : place & ~bit;
        return true;
    }
    int64_t size() const { return size_; }
    // The word of a place; false if the scratch file fails.
    bool word(int64_t place, uint32_t& value) {
        if (!turnTo(place / kPageWords)) return false;
        value = page_[static_cast<std::size_t>(place % kPageWords)];
        return true;
    }

  private:
    static constexpr int64_t kPageWords = 65536;

    bool turnTo(int64_t page) {
        if (page_.empty()) page_.resize(kPageWords);
        if (page == current_) return true;
        if (!file_.isOpen()) file_ = qxbase::openScratch();
        if (!file_.isOpen()) return false;
        const std::span bytes = std::as_writable_bytes(std::span(page_));
        const auto length = static_cast<int64_t>(bytes.size());
        if (!file_.writeAt(current_ * length, bytes)) return false;
        std::fill(page_.begin(), page_.end(), 0);
        current_ = page;
        return file_.readAt(page * length, bytes) >= 0;
    }

    std::vector<uint32_t> page_;
    int64_t current_ = 0;
    int64_t size_ = 0;
    store::File file_;
};

struct Entry {
    Bitmap bits;
    bool failed = false;
};

store::HandleTable<Entry> bitmaps;

}  // namespace

namespace qxbase {

void closeBitmaps() { bitmaps.closeAll(); }

}  // namespace qxbase

void bitcre_(int32_t* bitmap) { *bitmap = bitmaps.add(std::make_unique<Entry>()); }

void bitclr_(const int32_t* bitmap) {
    if (Entry* found = bitmaps.find(*bitmap)) *found = {};
}

void bitset_(const int32_t* index, const int32_t* value, const int32_t* bitmap) {
    Entry* found = bitmaps.find(*bitmap);
    if (found && *index >= 1 && !found->bits.set(*index, *value != 0)) found->failed = true;
}

void bitwtr_(const int32_t* handle, const int32_t* firstRecord, const int32_t* bitmap,
             int32_t* status) {
    Entry* found = bitmaps.find(*bitmap);
    *status = -1;
    if (!found || found->failed) return;
    int32_t number = *firstRecord;
    const int32_t one = 1;
    // A mask without bits has a word all the same.
    const int64_t words = std::max<int64_t>(found->bits.size(), 1);
    for (int64_t place = 0; place < words; ++place, ++number) {
        uint32_t word = 0;
        if (!found->bits.word(place, word)) return;
        const uint32_t turned = store::turned(word);
        vwrite_(handle, &number, &turned, &one);
    }
    vstat_(handle, status);
}

void bitcls_(const int32_t* bitmap) { bitmaps.close(*bitmap); }
