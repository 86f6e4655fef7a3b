#include "datasets/indexes.h"

namespace datasets {

using qx::call;

namespace {

constexpr std::size_t kBlockEntries = 100;

}  // namespace

IndexCursor::IndexCursor(std::string_view coverage, Indexed what, std::string_view subclass)
    : handle_(Handle<spxcls_>::opened(spxopn_, coverage, subclass, static_cast<int32_t>(what))),
      entries_(kBlockEntries) {
    if (handle_) call(spxhdr_, handle_.number(), recordCount_, extent_, nodes_, blocks_);
}

bool IndexCursor::next() {
    int32_t count = 0;
    int32_t status = 1;
    if (block_.number <= blocks_) {
        ++block_.number;
        call(spxblk_, handle_.number(), block_.number, entries_[0].data(), count, status);
    }
    block_.entries = std::span(entries_).first(static_cast<std::size_t>(count));
    if (status != 0) block_.number = blocks_ + 1;
    return status == 0;
}

std::array<int32_t, 2> IndexCursor::node(int32_t number) const {
    std::array<int32_t, 2> entry{};
    if (handle_) call(spxnod_, handle_.number(), number, entry[0], entry[1]);
    return entry;
}

std::optional<std::vector<int32_t>> IndexCursor::ask(const Box& rectangle) const {
    int32_t count = 0;
    int32_t status = 1;
    if (handle_) call(spxask_, handle_.number(), rectangle, count, status);
    if (status != 0) return std::nullopt;
    std::vector<int32_t> records;
    int32_t record = 0;
    while (call(spxnxt_, handle_.number(), record, status), status == 0) records.push_back(record);
    return records;
}

}  // namespace datasets
