#include "companions/qxfeat/table_definition.h"

#include <algorithm>
#include <iterator>

#include "companions/qxfeat/catalogue.h"
#include "companions/qxfeat/packed_words.h"

namespace qxfeat {

namespace {

constexpr std::string_view kMark = "QXTABLED";
constexpr int32_t kVersion = 1;

int32_t endOf(const QxItemDescriptor& item) { return item.start - 1 + item.width; }

bool lieWithin(const QxItemDescriptor& inner, const QxItemDescriptor& outer) {
    return inner.start >= outer.start && endOf(inner) <= endOf(outer);
}

// Every number that is kept of an item, in the order of the file.
template <class Stream, class Item>
void eachNumber(Stream&& next, Item& each) {
    auto& item = each.item;
    for (auto* number : {&item.descriptor.width, &item.descriptor.start, &item.descriptor.type,
                         &item.descriptor.decimals, &item.descriptor.outputWidth, &item.redefined,
                         &item.number, &item.indexed, &each.offset, &item.kept[0], &item.kept[1],
                         &item.kept[2], &item.kept[3], &item.kept[4], &item.kept[5]}) {
        next(*number);
    }
}

}  // namespace

bool isTextType(int32_t type) {
    return type == QX_ITEM_DATE || type == QX_ITEM_CHARACTER || type == QX_ITEM_INTEGER_TEXT;
}

bool samePlace(const QxItemDescriptor& left, const QxItemDescriptor& right) {
    return left.start == right.start && left.width == right.width &&
           (left.type == right.type || (isTextType(left.type) && isTextType(right.type)));
}

uint64_t placeKey(const QxItemDescriptor& item) {
    const auto half = [](int32_t value) { return uint64_t{static_cast<uint16_t>(value)}; };
    const auto type = static_cast<uint32_t>(isTextType(item.type) ? QX_ITEM_CHARACTER : item.type);
    return uint64_t{type} << 32 | half(item.start) << 16 | half(item.width);
}

// Takes the bytes of an item; false if some were taken before.
bool TableDefinition::take(const QxItemDescriptor& item) {
    int32_t first = item.start - 1;
    int32_t end = endOf(item);
    if (first == end) return true;
    auto run = taken_.upper_bound(first);
    if (run != taken_.begin() && std::prev(run)->second > first) --run;
    const bool free = run == taken_.end() || run->first >= end;
    while (run != taken_.end() && run->first < end) {
        first = std::min(first, run->first);
        end = std::max(end, run->second);
        run = taken_.erase(run);
    }
    taken_[first] = end;
    return free;
}

void TableDefinition::add(TableItem item) {
    if (item.item.redefined == 0) {
        const QxItemDescriptor& place = item.item.descriptor;
        const bool twin = !places_.insert(placeKey(place)).second;
        item.moved = !take(place) && !twin;
    }
    items.push_back(std::move(item));
}

int32_t TableDefinition::storedBytes() const {
    int32_t bytes = 0;
    int32_t moved = 0;
    for (const TableItem& each : items) {
        bytes = std::max(bytes, endOf(each.item.descriptor));
        if (each.moved) moved += each.item.descriptor.width;
    }
    return bytes + bytes % 2 + moved;
}

void TableDefinition::layOut() {
    recordLength = 0;
    bool anyMoved = false;
    for (const TableItem& each : items) {
        recordLength = std::max(recordLength, endOf(each.item.descriptor));
        anyMoved |= each.moved;
    }
    recordLength += recordLength % 2;
    storedLength = recordLength;
    for (TableItem& each : items) {
        each.offset = each.moved ? storedLength : each.item.descriptor.start - 1;
        if (each.moved) storedLength += each.item.descriptor.width;
    }
    if (!anyMoved) return;
    // A twin, or a redefined item, goes where the item went that it lies in.
    for (TableItem& each : items) {
        if (each.moved) continue;
        for (const TableItem& host : items) {
            if (&host == &each || host.item.redefined != 0) continue;
            const bool together = each.item.redefined != 0
                                      ? lieWithin(each.item.descriptor, host.item.descriptor)
                                      : samePlace(each.item.descriptor, host.item.descriptor);
            if (!together) continue;
            each.offset = host.offset + each.item.descriptor.start - host.item.descriptor.start;
            break;
        }
    }
}

PackedWriter TableDefinition::packed() const {
    PackedWriter writer;
    writer.raw(kMark) << kVersion << recordLength << storedLength
                      << static_cast<int32_t>(items.size()) << std::string_view(name)
                      << std::string_view(externalPath);
    for (const TableItem& each : items) {
        writer << std::string_view(each.name) << std::string_view(each.alternateName);
        eachNumber([&](int32_t number) { writer << number; }, each);
    }
    return writer;
}

bool TableDefinition::write(const std::string& path) const {
    return store::replaceFile(path, packed().bytes());
}

bool TableDefinition::writeNew(store::File file) const {
    if (file.writeAt(0, packed().bytes()) && file.close()) return true;
    store::removeFile(file.path());
    return false;
}

bool TableDefinition::read(const std::string& path) {
    *this = {};
    PackedReader reader(path, kMark);
    int32_t version = 0;
    int32_t count = 0;
    reader >> version >> recordLength >> storedLength >> count;
    reader.text(name, QX_NAME_LENGTH).text(externalPath, QX_NAME_LENGTH);
    if (!reader.ok() || count > static_cast<int32_t>(kMostItems) || version != kVersion ||
        recordLength < 0 || storedLength < recordLength) {
        return false;
    }
    for (int32_t index = 0; index < count; ++index) {
        TableItem each;
        reader.text(each.name, kLongestItemName).text(each.alternateName, kLongestItemName);
        eachNumber([&](int32_t& number) { reader >> number; }, each);
        const QxItemDescriptor& place = each.item.descriptor;
        const bool inside = place.start >= 1 && place.width >= 0 && each.offset >= 0 &&
                            int64_t{place.start} - 1 + place.width <= kHighestEnd &&
                            int64_t{each.offset} + place.width <= storedLength;
        if (!reader.ok() || !inside) return false;
        each.moved = each.item.redefined == 0 && each.offset >= recordLength && place.width > 0;
        items.push_back(std::move(each));
    }
    return true;
}

}  // namespace qxfeat
