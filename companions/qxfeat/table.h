// A table that is open.
#ifndef COMPANIONS_QXFEAT_TABLE_H
#define COMPANIONS_QXFEAT_TABLE_H

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "companions/qxfeat/catalogue.h"
#include "companions/qxfeat/row_plan.h"
#include "companions/qxfeat/table_definition.h"
#include "companions/store/handle_table.h"
#include "companions/store/open_files.h"
#include "companions/store/record_file.h"

namespace qxfeat {

// File codes of a table's records and of an item's index.
inline constexpr int32_t kTableRecordsCode = -2;
inline constexpr int32_t kItemIndexCode = -3;

class Table : public store::Buffered {
  public:
    // A table that is being defined under a number that was taken for it. Its definition is stored
    // with the first record, when the table is closed, or before an error unwinds; the catalogue
    // lists it once it is closed.
    static std::unique_ptr<Table> define(const std::string& directory, TakenNumber taken,
                                         std::string_view name);
    // One that is there; null if its files cannot be understood.
    static std::unique_ptr<Table> open(const std::string& directory, int32_t number,
                                       std::string_view name, bool toWrite);
    ~Table() override;

    const TableDefinition& definition() const { return definition_; }
    const std::string& directory() const { return directory_; }
    int32_t number() const { return number_; }
    int64_t recordCount() const;

    // Defining. All are false once there are records.
    bool addItem(TableItem item);
    bool putRecordsIn(const std::string& path);
    // Keeps that an item, by its place from 0, has an index. The definition says so once the table
    // is closed.
    void markIndexed(std::size_t place);
    // Whether that was since the last record was put.
    bool indexedSince(std::size_t place) const { return indexedSince_.count(place) != 0; }

    bool putRecord(int64_t number, const std::byte* record);
    // The same for records of a plan, with the status of infrow_ (host/qxfeat/table_rows.h).
    bool planRecords(std::span<const QxItemDescriptor> items, const int32_t* places);
    int32_t putPlanned(int64_t number, const double* values, std::string_view text);
    // The bytes that infenc_ is to fill for an item of this table that is moved; empty for others.
    std::span<std::byte> movedBytes(const QxItemDescriptor& item) {
        return moved_.empty() ? std::span<std::byte>{} : findMoved(item);
    }

    // Reading: the record of a number, or the next one; false if there is none.
    bool readRecord(int64_t number);
    bool readNext();
    int64_t recordNumber() const;
    // An item's bytes in the record that was read last; empty if none was.
    std::span<const std::byte> itemBytes(const TableItem& item) const;
    // A reader of its own over the records as they are now; null if there are none yet.
    std::unique_ptr<store::RecordReader> records();
    // The index of an item, by its place from 0; null if it has none that can be read.
    store::RecordReader* index(std::size_t place);

    std::string recordsPath() const;
    std::string indexPath(std::size_t place) const;
    void flush() override;
    // Whether this is the table of a name that is being defined, and not listed yet.
    bool defines(const std::string& directory, std::string_view name) const {
        return !listed_ && directory_ == directory && definition_.name == name;
    }

  private:
    Table(std::string directory, int32_t number)
        : directory_(std::move(directory)), number_(number) {}
    bool startRecords();
    std::span<std::byte> findMoved(const QxItemDescriptor& item);
    void noteMoved(std::size_t item);
    void finish();
    bool hasRecords() const { return writer_ || reader_ || opened_; }

    struct Moved {
        std::size_t item;
        std::vector<std::byte> bytes;
    };

    std::string directory_;
    int32_t number_;
    store::File definitionFile_;  // until the definition is first written
    TableDefinition definition_;
    bool changed_ = false;
    bool opened_ = false;
    bool listed_ = true;  // or has nothing yet that the catalogue could list
    std::unique_ptr<store::RecordWriter> writer_;
    std::unique_ptr<store::RecordReader> reader_;
    std::vector<std::byte> record_;
    bool recordRead_ = false;
    RowPlan plan_;
    std::vector<Moved> moved_;
    std::map<uint64_t, std::size_t> movedPlaces_;  // by placeKey, into moved_
    std::map<std::size_t, std::unique_ptr<store::RecordReader>> indexes_;
    std::set<std::size_t> indexedSince_;
};

// Whether a path leads from the workspace to a file inside it.
bool staysInside(std::string_view path);

store::HandleTable<Table>& tables();
// The table whose moved items infenc_ fills: the one that was defined or opened to write last.
Table* tableBeingWritten();

}  // namespace qxfeat

#endif
