#include "host/qxfeat/tables.h"

#include <algorithm>
#include <cerrno>

#include "companions/qxfeat/catalogue.h"
#include "companions/qxfeat/item_values.h"
#include "companions/qxfeat/state.h"
#include "companions/qxfeat/table.h"
#include "companions/store/member_names.h"
#include "host/cpp/call.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/failures.h"
#include "host/qxbase/messages.h"

namespace {

using namespace qxfeat;
using qx::textArgument;

constexpr int32_t kSuccess = 0;
constexpr int32_t kFailed = -1;

// Those of another table, that a damaged catalogue calls by this number, stay.
void removeFiles(const std::string& directory, int32_t number, std::string_view name) {
    TableDefinition definition;
    if (definition.read(tableFile(directory, number, "def")) && definition.name != name) return;
    for (std::size_t item = 1; item <= definition.items.size(); ++item) {
        store::dropFile(tableFile(directory, number, "index" + std::to_string(item)));
    }
    for (const char* suffix : {"dat", "xml", "def"}) {
        store::dropFile(tableFile(directory, number, suffix));
    }
}

}  // namespace

namespace qxfeat {

void closeTables() {
    tables().closeAll();
    settleCatalogue();
}

}  // namespace qxfeat

void infarc_(const char* coverage, char* directory, char* prefix, char* name,
             int32_t coverageLength, int32_t directoryLength, int32_t prefixLength,
             int32_t nameLength) {
    const std::string_view path = textArgument(coverage, coverageLength);
    qx::wholeResult(directory, directoryLength, store::infoDirectory(path));
    qx::textResult(prefix, prefixLength, "");
    qx::wholeResult(name, nameLength, store::namePart(path));
}

void infpth_(const char* path, char* directory, char* prefix, char* name, int32_t pathLength,
             int32_t directoryLength, int32_t prefixLength, int32_t nameLength) {
    infarc_(path, directory, prefix, name, pathLength, directoryLength, prefixLength, nameLength);
}

void infers_(const char* name, const char* directory, const char*, const int32_t*, int32_t* status,
             int32_t nameLength, int32_t directoryLength, int32_t) {
    const std::string place(textArgument(directory, directoryLength));
    const std::string wanted(textArgument(name, nameLength));
    const Catalogue& catalogue = readCatalogue(place);
    *status = catalogue.sound ? kSuccess : kFailed;
    // Mostly there is none.
    if (!catalogue.sound || catalogue.find(wanted) == 0 || !store::isDirectory(place)) return;
    const CatalogueLock lock(place);
    readCatalogue(place);
    *status = kFailed;
    if (!lock.held() || !catalogue.sound) return;
    *status = kSuccess;
    const int32_t number = catalogue.find(wanted);
    if (number == 0) return;
    if (!removeTable(wanted)) {
        *status = kFailed;
        return;
    }
    removeFiles(place, number, wanted);
}

void infdef_(const char* name, const char* directory, const char*, const int32_t*, int32_t* table,
             int32_t* status, int32_t nameLength, int32_t directoryLength, int32_t) {
    const std::string place(textArgument(directory, directoryLength));
    const std::string wanted(textArgument(name, nameLength));
    *status = kFailed;
    if (wanted.empty() || wanted.size() > QX_TABLE_NAME_LENGTH) {
        wrfailC(place.c_str(), wanted.empty() ? EINVAL : ENAMETOOLONG);
        return;
    }
    const Catalogue& catalogue = readCatalogue(place);
    // Where tables are listed there is a folder.
    if (catalogue.numbers.size() == 0 && !store::haveDirectory(place)) return;
    if (!catalogue.sound) {
        wrfailC(cataloguePath(place).c_str(), 0);
        return;
    }
    if (catalogue.find(wanted) != 0 ||
        tables().findIf([&](const Table& open) { return open.defines(place, wanted); })) {
        *status = QX_TABLE_TAKEN;
        return;
    }
    if (!catalogue.hasRoomFor(wanted)) {
        qx::call(meschr_, std::string_view(place), 0);
        qx::call(nonftl_, "%1% holds as many tables as it can", -1);
        wrfailC(cataloguePath(place).c_str(), ENOSPC);
        return;
    }
    TakenNumber taken = takeNumber(place);
    if (taken.number == 0) return;
    *table = tables().add(Table::define(place, std::move(taken), wanted));
    *status = kSuccess;
}

void infadi_(const int32_t* table, const int32_t* redefined, const char* name,
             const char* alternateName, const char*, const int32_t* type, const int32_t* width,
             const int32_t* outputWidth, const int32_t* decimals, const int32_t* column26,
             const int32_t* column37, const int32_t* columns38to39, const int32_t* columns20to21,
             const int32_t* columns40to43, const int32_t* columns44to47, const int32_t* start,
             int32_t* status, int32_t nameLength, int32_t alternateNameLength, int32_t) {
    *status = kFailed;
    Table* found = tables().find(*table);
    if (!found || *start < 1 || *width < 0) return;
    if (int64_t{*start} - 1 + *width > kHighestEnd) return;
    TableItem item;
    item.name = textArgument(name, nameLength);
    item.alternateName = textArgument(alternateName, alternateNameLength);
    if (std::max(item.name.size(), item.alternateName.size()) > kLongestItemName) return;
    item.item.descriptor = {*start, *width, *type, *decimals, *outputWidth};
    item.item.redefined = *redefined != 0 ? 1 : 0;
    const int32_t* kept[] = {columns20to21, column26,      column37,
                             columns38to39, columns40to43, columns44to47};
    std::transform(std::begin(kept), std::end(kept), item.item.kept,
                   [](const int32_t* value) { return *value; });
    if (found->addItem(std::move(item))) *status = kSuccess;
}

void infxtn_(const int32_t* table, const char* path, int32_t* status, int32_t pathLength) {
    Table* found = tables().find(*table);
    const std::string file(textArgument(path, pathLength));
    *status = found && found->putRecordsIn(file) ? kSuccess : kFailed;
}

void infopn_(const char* name, const char* directory, const char*, const int32_t* mode,
             int32_t* table, int32_t* recordCount, int32_t* recordLength, int32_t* status,
             int32_t nameLength, int32_t directoryLength, int32_t) {
    constexpr int32_t kToWrite = 2;
    const std::string place(textArgument(directory, directoryLength));
    const Catalogue& catalogue = readCatalogue(place);
    *status = kFailed;
    if (!catalogue.sound) return;
    const std::string_view wanted = textArgument(name, nameLength);
    const int32_t number = catalogue.find(wanted);
    auto opened = number != 0 ? Table::open(place, number, wanted, *mode == kToWrite) : nullptr;
    if (!opened) return;
    *recordCount = static_cast<int32_t>(std::min<int64_t>(opened->recordCount(), INT32_MAX));
    *recordLength = opened->definition().recordLength;
    *table = tables().add(std::move(opened));
    *status = kSuccess;
}

void infcls_(const int32_t* table) { tables().close(*table); }

void infenc_(const QxItemDescriptor* item, const double* value, const char* text,
             const int32_t* recordLength, void* record, int32_t* status, int32_t textLength) {
    *status = kFailed;
    if (item->start < 1 || item->width < 0) return;
    std::span<std::byte> bytes;
    if (Table* table = tableBeingWritten()) bytes = table->movedBytes(*item);
    if (bytes.empty()) {
        if (int64_t{item->start} - 1 + item->width > *recordLength) return;
        bytes = {static_cast<std::byte*>(record) + item->start - 1,
                 static_cast<std::size_t>(item->width)};
    }
    const std::string_view characters(text, static_cast<std::size_t>(std::max(textLength, 0)));
    if (packItem(*item, *value, characters, bytes)) *status = kSuccess;
}

void infput_(const int32_t* table, const int32_t* number, const void* record, int32_t* status) {
    Table* found = tables().find(*table);
    *status = found && found->putRecord(*number, static_cast<const std::byte*>(record)) ? kSuccess
                                                                                        : kFailed;
}

void infxml_nam_(const int32_t* table, char* path, int32_t pathLength) {
    const Table* found = tables().find(*table);
    qx::wholeResult(path, pathLength,
                    found ? tableFile(found->directory(), found->number(), "xml") : std::string());
}
