#include "host/qxbase/lists.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "companions/qxbase/state.h"
#include "companions/store/handle_table.h"
#include "host/cpp/growing_bytes.h"
#include "host/qxbase/records.h"

namespace {

constexpr int32_t kFailed = -1;

struct List {
    std::size_t wordsPerElement;
    qx::GrowingBytes bytes{};

    std::size_t elementBytes() const { return wordsPerElement * sizeof(int32_t); }
    std::size_t count() const { return bytes.size() / elementBytes(); }
    const int32_t* words() const { return reinterpret_cast<const int32_t*>(bytes.data()); }
};

store::HandleTable<List> lists;

}  // namespace

namespace qxbase {

void closeLists() { lists.closeAll(); }

}  // namespace qxbase

void memcre_(const int32_t* wordsPerElement, int32_t* list, int32_t* status) {
    if (*wordsPerElement < 1) {
        *status = kFailed;
        return;
    }
    *list = lists.add(std::make_unique<List>(List{static_cast<std::size_t>(*wordsPerElement)}));
    *status = 0;
}

void memcr2_(const int32_t* wordsPerElement, const int32_t*, int32_t* list, int32_t* status) {
    memcre_(wordsPerElement, list, status);
}

void memput_(const int32_t* list, const int32_t* index, const int32_t* element) {
    List* found = lists.find(*list);
    if (!found || *index < 1 || static_cast<std::size_t>(*index) > found->count() + 1) return;
    const std::size_t place = (static_cast<std::size_t>(*index) - 1) * found->elementBytes();
    if (place == found->bytes.size()) found->bytes.resize(place + found->elementBytes());
    std::memcpy(found->bytes.data() + place, element, found->elementBytes());
}

void memget_(const int32_t* list, const int32_t* index, int32_t* element, int32_t* status) {
    const List* found = lists.find(*list);
    if (!found || *index < 1 || static_cast<std::size_t>(*index) > found->count()) {
        *status = kFailed;
        return;
    }
    const std::size_t place = (static_cast<std::size_t>(*index) - 1) * found->elementBytes();
    std::memcpy(element, found->bytes.data() + place, found->elementBytes());
    *status = 0;
}

void memptr_(const int32_t* list, const int32_t** words, int32_t* count) {
    const List* found = lists.find(*list);
    *words = found ? found->words() : nullptr;
    *count = found ? static_cast<int32_t>(found->count()) : 0;
}

void memvwt_(const int32_t* handle, const int32_t* number, const int32_t* list,
             const int32_t* count) {
    const List* found = lists.find(*list);
    if (!found) return;
    const auto elements = static_cast<std::size_t>(
        std::clamp<int64_t>(*count, 0, static_cast<int64_t>(found->count())));
    const auto words = static_cast<int32_t>(elements * found->wordsPerElement);
    vwrite_(handle, number, found->words(), &words);
}

void memdel_(const int32_t* list) { lists.close(*list); }
void memcls_(const int32_t* list) { lists.close(*list); }
