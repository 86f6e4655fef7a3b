#include "host/qxfeat/table_reading.h"

#include <algorithm>

#include "companions/qxfeat/catalogue.h"
#include "companions/qxfeat/item_values.h"
#include "companions/qxfeat/state.h"
#include "companions/qxfeat/table.h"
#include "host/cpp/fixed_text.h"

namespace {

using namespace qxfeat;
using qx::textArgument;
using qx::textResult;

constexpr int32_t kSuccess = 0;
constexpr int32_t kFailed = -1;
constexpr int32_t kEnd = -1;

struct TableList {
    std::vector<std::string> names;
    std::size_t next = 0;
};

store::HandleTable<TableList> lists;

// A name without a point stands for itself, and one with a point may be that of a coverage.
bool belongs(std::string_view table, std::string_view owner) {
    return table.substr(0, table.rfind('.')) == owner || table == owner;
}

// Of a table or none.
const TableItem* findItem(const Table* table, const int32_t* place) {
    if (!table || *place < 1) return nullptr;
    const auto& items = table->definition().items;
    const auto index = static_cast<std::size_t>(*place) - 1;
    return index < items.size() ? &items[index] : nullptr;
}

}  // namespace

namespace qxfeat {

void closeTableLists() { lists.closeAll(); }

}  // namespace qxfeat

void inflst_(int32_t* list, const char* directory, const char* owner, int32_t* count,
             int32_t directoryLength, int32_t ownerLength) {
    const std::string_view wanted = textArgument(owner, ownerLength);
    // What a damaged catalogue still names is listed.
    const auto& catalogue = readCatalogue(std::string(textArgument(directory, directoryLength)));
    auto made = std::make_unique<TableList>();
    for (const Catalogue::Entry& entry : catalogue.entries()) {
        if (wanted.empty() || belongs(entry.name, wanted)) made->names.emplace_back(entry.name);
    }
    *count = static_cast<int32_t>(made->names.size());
    *list = lists.add(std::move(made));
}

void infnxt_(const int32_t* list, char* name, int32_t* status, int32_t nameLength) {
    TableList* found = lists.find(*list);
    *status = kEnd;
    if (!found || found->next == found->names.size()) return;
    textResult(name, nameLength, found->names[found->next++]);
    *status = kSuccess;
}

void infend_(const int32_t* list) { lists.close(*list); }

void infitc_(const int32_t* table, int32_t* items, int32_t* external) {
    const Table* found = tables().find(*table);
    *items = found ? static_cast<int32_t>(found->definition().items.size()) : 0;
    *external = found && !found->definition().externalPath.empty() ? 1 : 0;
}

void inflen_(const int32_t* table, int32_t* bytes) {
    const Table* found = tables().find(*table);
    *bytes = found ? found->definition().storedBytes() : 0;
}

void infitm_(const int32_t* table, const int32_t* place, QxItem* item, char* name,
             char* alternateName, int32_t* status, int32_t nameLength,
             int32_t alternateNameLength) {
    const TableItem* found = findItem(tables().find(*table), place);
    *status = found ? kSuccess : kFailed;
    if (!found) return;
    *item = found->item;
    textResult(name, nameLength, found->name);
    textResult(alternateName, alternateNameLength, found->alternateName);
}

void inffnd_(const int32_t* table, const char* name, int32_t* place, int32_t nameLength) {
    *place = 0;
    const Table* found = tables().find(*table);
    if (!found) return;
    const auto& items = found->definition().items;
    const std::string_view wanted = textArgument(name, nameLength);
    const auto item = std::find_if(items.begin(), items.end(),
                                   [&](const TableItem& each) { return each.name == wanted; });
    if (item != items.end()) *place = static_cast<int32_t>(item - items.begin()) + 1;
}

void infget_(const int32_t* table, const int32_t* number, int32_t* status) {
    Table* found = tables().find(*table);
    *status = found && found->readRecord(*number) ? kSuccess : kFailed;
}

void infrd_(const int32_t* table, int32_t* number, int32_t* status) {
    Table* found = tables().find(*table);
    *status = found && found->readNext() ? kSuccess : kEnd;
    if (*status == kSuccess) *number = static_cast<int32_t>(found->recordNumber());
}

void infbyt_(const int32_t* table, const int32_t* place, const char** bytes, int32_t* count,
             int32_t* status) {
    const Table* const open = tables().find(*table);
    const TableItem* item = findItem(open, place);
    const auto found = item ? open->itemBytes(*item) : std::span<const std::byte>();
    *bytes = reinterpret_cast<const char*>(found.data());
    *count = static_cast<int32_t>(found.size());
    *status = item && (!found.empty() || item->item.descriptor.width == 0) ? kSuccess : kFailed;
}

void infval_(const int32_t* table, const int32_t* place, double* value, char* text, int32_t* status,
             int32_t textLength) {
    const Table* const open = tables().find(*table);
    const TableItem* item = findItem(open, place);
    *status = kFailed;
    if (!item) return;
    const auto bytes = open->itemBytes(*item);
    if (bytes.empty() && item->item.descriptor.width != 0) return;
    *value = unpackNumber(item->item.descriptor, bytes);
    const auto* characters = reinterpret_cast<const char*>(bytes.data());
    textResult(text, textLength, {characters, bytes.size()});
    *status = kSuccess;
}
