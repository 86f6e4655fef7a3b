#include "companions/qxfeat/table.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include "companions/qxfeat/catalogue.h"
#include "companions/store/member_names.h"
#include "host/qxbase/failures.h"
#include "host/qxfeat/table_rows.h"

namespace qxfeat {

namespace {

Table* beingWritten = nullptr;

}  // namespace

store::HandleTable<Table>& tables() {
    static store::HandleTable<Table> open;
    return open;
}

bool staysInside(std::string_view path) {
    if (path.empty() || path.front() == '/') return false;
    while (!path.empty()) {
        const std::string_view part = path.substr(0, path.find('/'));
        if (part == "." || part == "..") return false;
        path.remove_prefix(std::min(part.size() + 1, path.size()));
    }
    return true;
}

Table* tableBeingWritten() { return beingWritten; }

std::unique_ptr<Table> Table::define(const std::string& directory, TakenNumber taken,
                                     std::string_view name) {
    std::unique_ptr<Table> table(new Table(directory, taken.number));
    table->definitionFile_ = std::move(taken.definition);
    table->definition_.name = name;
    table->changed_ = true;
    table->listed_ = false;
    beingWritten = table.get();
    return table;
}

Table::~Table() {
    if (beingWritten == this) beingWritten = nullptr;
    try {
        finish();
    } catch (const std::bad_alloc&) {
        wrfailC(directory_.c_str(), ENOMEM);
    }
}

void Table::finish() {
    Table::flush();
    const bool hasFile = writer_ != nullptr;
    writer_.reset();
    if (listed_ || changed_) return;
    // What could not be begun is no file of records.
    if (!hasFile && store::exists(recordsPath())) store::removeFile(recordsPath());
    listed_ = enterTable(directory_, number_, definition_.name);
}

std::unique_ptr<Table> Table::open(const std::string& directory, int32_t number,
                                   std::string_view name, bool toWrite) {
    std::unique_ptr<Table> table(new Table(directory, number));
    table->opened_ = true;
    TableDefinition& definition = table->definition_;
    const std::string path = tableFile(directory, number, "def");
    if (!definition.read(path) || definition.name != name ||
        (!definition.externalPath.empty() && !staysInside(definition.externalPath))) {
        rdfailC(path.c_str(), 0);
        return nullptr;
    }
    for (std::size_t item = 0; item < definition.items.size(); ++item) {
        if (definition.items[item].moved) table->noteMoved(item);
    }
    if (toWrite) {
        beingWritten = table.get();
        return table->startRecords() ? std::move(table) : nullptr;
    }
    // A table without records may have no file for them.
    if (!store::exists(table->recordsPath())) return table;
    table->reader_ = store::RecordReader::open(table->recordsPath());
    const bool sound = table->reader_ && table->reader_->header().code == kTableRecordsCode &&
                       table->reader_->header().recordBytes == definition.storedLength;
    if (!sound) rdfailC(table->recordsPath().c_str(), 0);
    return sound ? std::move(table) : nullptr;
}

int64_t Table::recordCount() const {
    return writer_ ? writer_->count() : reader_ ? reader_->count() : 0;
}

bool Table::addItem(TableItem item) {
    if (hasRecords() || definition_.items.size() == kMostItems) return false;
    const auto place = static_cast<int32_t>(definition_.items.size()) + 1;
    item.item.number = item.item.redefined != 0 ? -1 : place;
    definition_.add(std::move(item));
    if (definition_.items.back().moved) noteMoved(definition_.items.size() - 1);
    changed_ = true;
    return true;
}

void Table::noteMoved(std::size_t item) {
    movedPlaces_.emplace(placeKey(definition_.items[item].item.descriptor), moved_.size());
    moved_.push_back({item, {}});
}

bool Table::putRecordsIn(const std::string& path) {
    if (hasRecords()) return false;
    const std::string_view workspace = store::directoryPart(directory_);
    std::string_view inside = path;
    if (!workspace.empty()) {
        if (!inside.starts_with(workspace)) return false;
        inside.remove_prefix(workspace.size());
        if (workspace.back() != '/' && !inside.starts_with('/')) return false;
        inside.remove_prefix(std::min(inside.find_first_not_of('/'), inside.size()));
    }
    if (!staysInside(inside)) return false;
    definition_.externalPath = inside;
    changed_ = true;
    return startRecords();
}

void Table::markIndexed(std::size_t place) {
    indexes_.erase(place);
    indexedSince_.insert(place);
    definition_.items[place].item.indexed = 1;
    changed_ = true;
}

bool Table::startRecords() {
    if (!opened_) {
        definition_.layOut();
        changed_ = true;
        flush();
    }
    store::RecordHeader header;
    header.code = kTableRecordsCode;
    header.recordBytes = definition_.storedLength;
    // Nobody reads the records of a table that is not listed: their header comes with the first.
    writer_ = opened_ ? store::RecordWriter::create(recordsPath(), header, true)
                      : store::RecordWriter::createInOnePiece(recordsPath(), header);
    if (writer_ && (writer_->header().code != header.code ||
                    writer_->header().recordBytes != header.recordBytes)) {
        writer_.reset();
    }
    return writer_ != nullptr;
}

bool Table::putRecord(int64_t number, const std::byte* record) {
    if (!writer_ && (hasRecords() || !startRecords())) return false;
    if (number < 1 || number > writer_->count() + 1) return false;
    indexedSince_.clear();
    std::vector<std::byte> whole;
    std::byte* place = nullptr;
    const auto stored = static_cast<std::size_t>(definition_.storedLength);
    const bool behind = number == writer_->count() + 1;
    if (behind) {
        place = writer_->append(stored);
    } else {
        whole.resize(stored);
        place = whole.data();
    }
    const auto length = static_cast<std::size_t>(definition_.recordLength);
    if (length > 0) std::memcpy(place, record, length);
    for (Moved& moved : moved_) {
        const TableItem& item = definition_.items[moved.item];
        moved.bytes.resize(static_cast<std::size_t>(item.item.descriptor.width));
        std::copy(moved.bytes.begin(), moved.bytes.end(), place + item.offset);
        std::fill(moved.bytes.begin(), moved.bytes.end(), std::byte{0});
    }
    if (!behind && stored > 0) return writer_->overwrite(number, whole);
    return !writer_->failed();
}

bool Table::planRecords(std::span<const QxItemDescriptor> items, const int32_t* places) {
    if (!hasRecords()) definition_.layOut();
    return moved_.empty() && plan_.make(items, places, definition_.recordLength);
}

int32_t Table::putPlanned(int64_t number, const double* values, std::string_view text) {
    if (number != recordCount() + 1) return QX_ROW_NEEDS_CARE;
    const std::span<const std::byte> record = plan_.pack(values, text);
    if (record.empty() || record.size() != static_cast<std::size_t>(definition_.recordLength)) {
        return QX_ROW_NEEDS_CARE;
    }
    if (!writer_ || !indexedSince_.empty()) return putRecord(number, record.data()) ? 0 : 1;
    std::memcpy(writer_->append(record.size()), record.data(), record.size());
    return writer_->failed() ? 1 : 0;
}

std::span<std::byte> Table::findMoved(const QxItemDescriptor& item) {
    const auto found = movedPlaces_.find(placeKey(item));
    if (found == movedPlaces_.end()) return {};
    Moved& moved = moved_[found->second];
    const QxItemDescriptor& place = definition_.items[moved.item].item.descriptor;
    if (!samePlace(place, item)) return {};
    moved.bytes.resize(static_cast<std::size_t>(place.width));
    return moved.bytes;
}

bool Table::readRecord(int64_t number) { return reader_ && reader_->seek(number) && readNext(); }

bool Table::readNext() {
    std::span<const std::byte> record;
    recordRead_ = reader_ && reader_->next(record);
    if (recordRead_) record_.assign(record.begin(), record.end());
    return recordRead_;
}

int64_t Table::recordNumber() const { return reader_ ? reader_->number() : 0; }

std::span<const std::byte> Table::itemBytes(const TableItem& item) const {
    if (!recordRead_) return {};
    return std::span(record_).subspan(static_cast<std::size_t>(item.offset),
                                      static_cast<std::size_t>(item.item.descriptor.width));
}

std::unique_ptr<store::RecordReader> Table::records() {
    if (writer_) writer_->flush();
    auto reader = store::RecordReader::open(recordsPath());
    if (reader && reader->header().recordBytes != definition_.storedLength) return nullptr;
    return reader;
}

store::RecordReader* Table::index(std::size_t place) {
    auto& reader = indexes_[place];
    if (!reader) reader = store::RecordReader::open(indexPath(place));
    return reader && reader->header().code == kItemIndexCode ? reader.get() : nullptr;
}

std::string Table::recordsPath() const {
    if (definition_.externalPath.empty()) return tableFile(directory_, number_, "dat");
    return store::joinPath(store::directoryPart(directory_), definition_.externalPath);
}

std::string Table::indexPath(std::size_t place) const {
    return tableFile(directory_, number_, "index" + std::to_string(place + 1));
}

void Table::flush() {
    if (!changed_) return;
    if (!hasRecords()) definition_.layOut();
    const std::string path = tableFile(directory_, number_, "def");
    changed_ = definitionFile_.isOpen() ? !definition_.writeNew(std::exchange(definitionFile_, {}))
                                        : !definition_.write(path);
}

}  // namespace qxfeat
