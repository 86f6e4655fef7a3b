#include "host/qxbase/lists.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "companions/qxbase/state.h"
#include "companions/store/handle_table.h"
#include "host/qxbase/records.h"

namespace {

constexpr int32_t kFailed = -1;

struct List {
    std::size_t wordsPerElement;
    std::vector<int32_t> words;
    std::size_t count() const { return words.size() / wordsPerElement; }
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
    *list = lists.add(std::make_unique<List>(List{static_cast<std::size_t>(*wordsPerElement), {}}));
    *status = 0;
}

void memcr2_(const int32_t* wordsPerElement, const int32_t*, int32_t* list, int32_t* status) {
    memcre_(wordsPerElement, list, status);
}

void memput_(const int32_t* list, const int32_t* index, const int32_t* element) {
    List* found = lists.find(*list);
    if (!found || *index < 1 || static_cast<std::size_t>(*index) > found->count() + 1) return;
    const std::size_t place = (static_cast<std::size_t>(*index) - 1) * found->wordsPerElement;
    if (place == found->words.size()) {
        found->words.insert(found->words.end(), element, element + found->wordsPerElement);
    } else {
        std::copy_n(element, found->wordsPerElement,
                    found->words.begin() + static_cast<std::ptrdiff_t>(place));
    }
}

void memget_(const int32_t* list, const int32_t* index, int32_t* element, int32_t* status) {
    const List* found = lists.find(*list);
    if (!found || *index < 1 || static_cast<std::size_t>(*index) > found->count()) {
        *status = kFailed;
        return;
    }
    const std::size_t place = (static_cast<std::size_t>(*index) - 1) * found->wordsPerElement;
    std::copy_n(found->words.begin() + static_cast<std::ptrdiff_t>(place), found->wordsPerElement,
                element);
    *status = 0;
}

void memptr_(const int32_t* list, const int32_t** words, int32_t* count) {
    const List* found = lists.find(*list);
    *words = found ? found->words.data() : nullptr;
    *count = found ? static_cast<int32_t>(found->count()) : 0;
}

void memvwt_(const int32_t* handle, const int32_t* number, const int32_t* list,
             const int32_t* count) {
    const List* found = lists.find(*list);
    if (!found) return;
    const auto elements = static_cast<std::size_t>(
        std::clamp<int64_t>(*count, 0, static_cast<int64_t>(found->count())));
    const auto words = static_cast<int32_t>(elements * found->wordsPerElement);
    vwrite_(handle, number, found->words.data(), &words);
}

void memdel_(const int32_t* list) { lists.close(*list); }
void memcls_(const int32_t* list) { lists.close(*list); }
