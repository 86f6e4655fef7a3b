#include "datasets/small_tables.h"

#include <algorithm>

#include "host/qxbase/byte_order.h"
#include "host/qxbase/names.h"
#include "host/qxfeat/tolerances.h"

namespace datasets {

using qx::call;

namespace {

constexpr int32_t kTextCode = 42;
constexpr int32_t kIntegerCode = 44;
constexpr int32_t kTextWords = 3;
constexpr std::size_t kUsualWords = 4000;

void take(std::span<int32_t> words, AddressText& record) {
    // The integer leads in the first record and follows in the others.
    const bool leads = record.number == 1;
    record.value = words[leads ? 0 : 2];
    call(swi4bn_, record.value, 1);
    record.text = {reinterpret_cast<const char*>(&words[leads ? 1 : 0]), 8};
}

void take(std::span<int32_t> words, AddressIntegers& record) {
    call(swi4bn_, words, static_cast<int32_t>(words.size()));
    using Entry = std::array<int32_t, 4>;
    record.entries = {reinterpret_cast<const Entry*>(words.data()), words.size() / 4};
}

}  // namespace

ToleranceCursor::ToleranceCursor(std::string_view coverage) {
    int32_t status = 0;
    call(tolrec_, coverage, count_, status);
    if (status != 0) count_ = -1;
    std::vector<int32_t> column1(static_cast<std::size_t>(count()));
    std::vector<int32_t> column2(column1.size());
    std::vector<double> values(column1.size());
    if (status == 0) call(tolget_, coverage, count_, column1, column2, values, status);
    for (std::size_t row = 0; status == 0 && row < values.size(); ++row) {
        rows_.push_back({static_cast<int32_t>(row) + 1, column1[row], column2[row], values[row]});
    }
}

template <class Record>
WordCursor<Record>::WordCursor(std::string_view coverage, int32_t code, int32_t recordWords)
    : words_(kUsualWords) {
    qx::Name path;
    call(aname_, coverage, path, code);
    int32_t handle = 0;
    int32_t foundCode = 0;
    int32_t foundWords = 0;
    int32_t status = 0;
    call(vopen_, handle, path, foundCode, foundWords, count_, status);
    handle_.take(handle, status);
    if (foundCode != code || foundWords != recordWords) handle_.reset();
    if (!handle_) count_ = 0;
}

template <class Record>
bool WordCursor<Record>::next() {
    if (record_.number >= count_) return false;
    ++record_.number;
    int32_t count = 0;
    int32_t status = 1;
    while (status > 0) {
        const auto room = static_cast<int32_t>(words_.size());
        call(vread_, handle_.number(), record_.number, words_.data(), room, count, status);
        if (status > 0) words_.resize(static_cast<std::size_t>(count));
    }
    if (status != 0) {
        record_.number = count_;  // nothing behind it is read either
        return false;
    }
    take(std::span(words_).first(static_cast<std::size_t>(count)), record_);
    return true;
}

template class WordCursor<AddressText>;
template class WordCursor<AddressIntegers>;

Tolerances tolerances(std::string_view coverage) { return Tolerances(coverage); }

AddressTexts addressTexts(std::string_view coverage) {
    return AddressTexts(coverage, kTextCode, kTextWords);
}

AddressTable addressIntegers(std::string_view coverage) {
    return AddressTable(coverage, kIntegerCode, 0);
}

}  // namespace datasets
