#include "host/qxbase/bitmaps.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "companions/qxbase/state.h"
#include "companions/store/handle_table.h"
#include "companions/store/words.h"
#include "host/qxbase/records.h"

namespace {

constexpr int32_t kBitsInWord = 32;

using Bitmap = std::vector<uint32_t>;

store::HandleTable<Bitmap> bitmaps;

}  // namespace

namespace qxbase {

void closeBitmaps() { bitmaps.closeAll(); }

}  // namespace qxbase

void bitcre_(int32_t* bitmap) { *bitmap = bitmaps.add(std::make_unique<Bitmap>()); }

void bitclr_(const int32_t* bitmap) {
    if (Bitmap* found = bitmaps.find(*bitmap)) std::fill(found->begin(), found->end(), 0);
}

void bitset_(const int32_t* index, const int32_t* value, const int32_t* bitmap) {
    Bitmap* found = bitmaps.find(*bitmap);
    if (!found || *index < 1) return;
    const auto word = static_cast<std::size_t>((*index - 1) / kBitsInWord);
    if (word >= found->size()) found->resize(word + 1);
    const uint32_t bit = 0x80000000U >> ((*index - 1) % kBitsInWord);
    if (*value != 0) {
        (*found)[word] |= bit;
    } else {
        (*found)[word] &= ~bit;
    }
}

void bitwtr_(const int32_t* handle, const int32_t* firstRecord, const int32_t* bitmap,
             int32_t* status) {
    const Bitmap* found = bitmaps.find(*bitmap);
    if (!found) {
        *status = -1;
        return;
    }
    int32_t number = *firstRecord;
    const int32_t one = 1;
    const auto write = [&](uint32_t word) {
        const uint32_t turned = store::turned(word);
        vwrite_(handle, &number, &turned, &one);
        ++number;
    };
    if (found->empty()) write(0);
    for (const uint32_t word : *found) write(word);
    vstat_(handle, status);
}

void bitcls_(const int32_t* bitmap) { bitmaps.close(*bitmap); }
