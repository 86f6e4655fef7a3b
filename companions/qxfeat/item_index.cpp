// The index of an item: a record file of the keys in their order, each with its record's number.
// Keys are such that their bytes compare as the values do: the text itself, or a real of 64 bits
// with its sign turned, and all bits where it is negative.
#include <algorithm>
#include <bit>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>
#include <utility>

#include "companions/qxfeat/item_values.h"
#include "companions/qxfeat/table.h"
#include "companions/store/member_names.h"
#include "companions/store/words.h"
#include "host/cpp/call.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/failures.h"
#include "host/qxbase/sort.h"
#include "host/qxfeat/table_reading.h"

namespace {

using namespace qxfeat;

constexpr int32_t kSuccess = 0;
constexpr int32_t kFailed = -1;
constexpr std::size_t kNumberBytes = 4;

bool hasNumberKey(const QxItemDescriptor& item) {
    return item.type == QX_ITEM_NUMBER_TEXT || item.type == QX_ITEM_INTEGER ||
           item.type == QX_ITEM_REAL;
}

std::size_t keyBytes(const QxItemDescriptor& item) {
    return hasNumberKey(item) ? sizeof(double) : static_cast<std::size_t>(item.width);
}

void putNumberKey(std::byte* place, double value) {
    if (std::isnan(value)) value = std::numeric_limits<double>::quiet_NaN();
    const auto bits = std::bit_cast<uint64_t>(value + 0.0);  // one zero, not two
    constexpr uint64_t kSign = uint64_t{1} << 63;
    store::put(place, bits & kSign ? ~bits : bits | kSign);
}

// The entries of an index in key order.
struct Index {
    store::RecordReader* reader = nullptr;
    std::size_t keyLength = 0;

    std::span<const std::byte> entry(int64_t place) {
        std::span<const std::byte> record;
        if (!reader->seek(place) || !reader->next(record)) return {};
        return record;
    }
    // The first place whose key is not less than the key, or with beyond greater than it.
    int64_t bound(std::span<const std::byte> key, bool beyond) {
        int64_t low = 1;
        int64_t high = reader->count() + 1;
        while (low < high) {
            const int64_t middle = low + (high - low) / 2;
            const auto found = entry(middle);
            if (found.empty()) return low;
            const int order = key.empty() ? 0 : std::memcmp(found.data(), key.data(), key.size());
            if (order < 0 || (beyond && order == 0)) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return low;
    }
};

Index openIndex(const int32_t* table, const int32_t* place) {
    Table* found = tables().find(*table);
    if (!found || *place < 1) return {};
    const auto index = static_cast<std::size_t>(*place) - 1;
    if (index >= found->definition().items.size()) return {};
    const std::size_t length = keyBytes(found->definition().items[index].item.descriptor);
    store::RecordReader* reader = found->index(index);
    const bool sound =
        reader && reader->header().recordBytes == static_cast<int32_t>(length + kNumberBytes);
    return sound ? Index{reader, length} : Index{};
}

// Which item an index is for: that of the file's name, or of the descriptor for a blank one.
std::size_t indexedItem(const Table& table, std::string_view path, const QxItemDescriptor& item) {
    const auto& items = table.definition().items;
    std::size_t place = 0;
    if (path.empty()) {
        while (place < items.size() && !samePlace(items[place].item.descriptor, item)) ++place;
        return place;
    }
    // The file's name ends in the item's number.
    std::size_t number = 0;
    const std::size_t digits = path.find_last_not_of("0123456789") + 1;
    std::from_chars(path.data() + digits, path.data() + path.size(), number);
    const bool there = number >= 1 && number <= items.size() && table.indexPath(number - 1) == path;
    return there ? number - 1 : items.size();
}

// The entries of an index on their way through the sort, which calls back without a pointer of its
// own: key, record number, and zeros up to a whole word. The number behind the key puts equal keys
// in the order of their records.
struct Build {
    store::RecordReader* records = nullptr;
    const TableItem* item = nullptr;
    store::RecordWriter* writer = nullptr;
    std::size_t length = 0;     // of a key with its number
    std::exception_ptr thrown;  // by a callback, behind whose caller it goes on
};
Build build;

int32_t readEntry(int32_t* words) {
    std::span<const std::byte> record;
    if (!build.records->next(record)) return kFailed;
    const QxItemDescriptor& place = build.item->item.descriptor;
    const auto bytes = record.subspan(static_cast<std::size_t>(build.item->offset),
                                      static_cast<std::size_t>(place.width));
    auto* entry = reinterpret_cast<std::byte*>(words);
    if (hasNumberKey(place)) {
        putNumberKey(entry, unpackNumber(place, bytes));
    } else {
        std::copy(bytes.begin(), bytes.end(), entry);
    }
    store::put(entry + build.length - kNumberBytes, static_cast<int32_t>(build.records->number()));
    return kSuccess;
}

int32_t nextEntry(int32_t* words) noexcept {
    try {
        return readEntry(words);
    } catch (...) {
        build.thrown = std::current_exception();
        return kFailed;
    }
}

int32_t compareEntries(const int32_t* first, const int32_t* second) {
    return std::memcmp(first, second, build.length);
}

void putEntry(const int32_t* words) noexcept {
    try {
        if (!build.thrown) std::memcpy(build.writer->append(build.length), words, build.length);
    } catch (...) {
        build.thrown = std::current_exception();
    }
}

// False if the sort had no room.
bool sortEntries() {
    constexpr std::size_t kAreaWords = 256 * 1024;
    constexpr std::size_t kLeastCapacity = 128;
    const std::size_t words = (build.length + 3) / 4;
    const std::size_t capacity = std::max(kAreaWords / (words + 1), kLeastCapacity);
    const auto area = std::make_unique<int32_t[]>((words + 1) * capacity);
    QxSortCounters counters{};
    qx::call(srtfilC, static_cast<int32_t>(words), static_cast<int32_t>(capacity), area.get(),
             nextEntry, compareEntries, putEntry, counters);
    if (build.thrown) std::rethrow_exception(std::exchange(build.thrown, nullptr));
    return counters.status == 0;
}

bool buildIndex(Table& table, std::size_t place) {
    const TableItem& item = table.definition().items[place];
    store::RecordHeader header;
    header.code = kItemIndexCode;
    const std::size_t length = keyBytes(item.item.descriptor) + kNumberBytes;
    header.recordBytes = static_cast<int32_t>(length);
    header.kept = {static_cast<int32_t>(place + 1), item.item.descriptor.type, 0};
    const std::string path = table.indexPath(place);
    auto writer = store::RecordWriter::create(path, header);
    if (!writer) {
        // Who asks for an index need not look whether it came about.
        wrfailC(path.c_str(), errno);
        return false;
    }
    const auto records = table.records();
    build = {records.get(), &item, writer.get(), length, nullptr};
    const bool sorted = !records || sortEntries();
    writer->close();
    return sorted && !writer->failed();
}

}  // namespace

void infxnm_(const int32_t* table, const int32_t* item, char* path, int32_t pathLength) {
    const Table* found = tables().find(*table);
    const bool there =
        found && *item >= 1 && static_cast<std::size_t>(*item) <= found->definition().items.size();
    qx::wholeResult(path, pathLength,
                    there ? found->indexPath(static_cast<std::size_t>(*item) - 1) : std::string());
}

void inxitm_(const char* path, const int32_t* table, const QxItemDescriptor* item, int32_t* status,
             int32_t pathLength) {
    *status = kFailed;
    Table* found = tables().find(*table);
    if (!found) return;
    const std::size_t place = indexedItem(*found, qx::textArgument(path, pathLength), *item);
    if (place >= found->definition().items.size()) return;
    *status = kSuccess;
    if (found->indexedSince(place)) return;
    if (buildIndex(*found, place)) {
        found->markIndexed(place);
    } else {
        *status = kFailed;
    }
}

void inxfnd_(const int32_t* table, const int32_t* place, const double* value, const char* text,
             int32_t* first, int32_t* count, int32_t* status, int32_t textLength) {
    *status = kFailed;
    Index index = openIndex(table, place);
    if (!index.reader) return;
    const auto item = static_cast<std::size_t>(*place) - 1;
    std::vector<std::byte> key(index.keyLength);
    if (hasNumberKey(tables().find(*table)->definition().items[item].item.descriptor)) {
        putNumberKey(key.data(), *value);
    } else if (!key.empty()) {
        qx::padText(reinterpret_cast<char*>(key.data()), key.size(),
                    qx::textArgument(text, textLength));
    }
    const int64_t low = index.bound(key, false);
    *first = static_cast<int32_t>(low);
    *count = static_cast<int32_t>(index.bound(key, true) - low);
    *status = kSuccess;
}

void inxget_(const int32_t* table, const int32_t* place, const int32_t* entry, int32_t* record,
             int32_t* status) {
    *status = kFailed;
    Index index = openIndex(table, place);
    const auto found = index.reader ? index.entry(*entry) : std::span<const std::byte>();
    if (found.empty()) return;
    *record = store::get<int32_t>(found.data() + index.keyLength);
    *status = kSuccess;
}
