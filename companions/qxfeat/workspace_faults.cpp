#include "companions/qxfeat/workspace_faults.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <set>
#include <utility>

#include "companions/qxfeat/table.h"
#include "companions/qxfeat/table_definition.h"
#include "companions/qxfeat/workspace_change.h"
#include "companions/store/folders.h"
#include "companions/store/member_names.h"
#include "companions/store/record_file.h"

namespace qxfeat {

namespace {

using store::joinPath;

// Whoever writes a table's files touches one of them more often than that.
constexpr int64_t kSecondsOfAnImport = 600;

// The files that a dataset keeps as records, by what their names begin with.
constexpr std::string_view kRecordFiles[] = {
    "coverage", "arc", "arc.idx", "lab",     "lab.idx", "cnt",       "pal",
    "pal.idx",  "pff", "rpl.",    "rpl.idx", "rxp.",    "lnk",       "adp",
    "adi",      "tol", "txt",     "txt.",    "txt.idx", "subclasses"};

bool keepsRecords(std::string_view name) {
    return std::ranges::any_of(kRecordFiles, [&](std::string_view known) {
        return known.ends_with('.') ? name.starts_with(known) : name == known;
    });
}

enum class Length { kWhole, kUnfinished, kShort };

// Whether a file of records holds as many as its head says. Records of any length are walked
// through.
Length lengthOf(store::RecordReader& reader, int64_t size) {
    const store::RecordHeader& header = reader.header();
    if (header.count < 0) return Length::kUnfinished;
    if (header.recordBytes > 0) {
        const int64_t room = size - int64_t{store::RecordHeader::kBytes};
        return header.count <= room / header.recordBytes ? Length::kWhole : Length::kShort;
    }
    if (header.end > size) return Length::kShort;
    std::span<const std::byte> record;
    for (int64_t number = 0; number < header.count; ++number) {
        if (!reader.next(record)) return Length::kShort;
    }
    return Length::kWhole;
}

// The number in the name of a table's file, "table12.def"; 0 for another name.
int32_t numberIn(std::string_view name) {
    int32_t number = 0;
    return std::sscanf(std::string(name).c_str(), "table%9d.", &number) == 1 ? number : 0;
}

bool isRecent(const std::string& path) {
    using namespace std::chrono;
    const auto now = duration_cast<seconds>(system_clock::now().time_since_epoch()).count();
    return now - store::File::identityOf(path).changedSeconds < kSecondsOfAnImport;
}

// A listed table whose files can be read to their ends.
bool isSound(const std::string& info, int32_t number, std::string_view name) {
    TableDefinition definition;
    if (!definition.read(tableFile(info, number, "def"))) return false;
    if (!name.empty() && definition.name != name) return false;
    const auto table = Table::open(info, number, definition.name, false);
    if (!table) return false;
    const std::string records = table->recordsPath();
    if (!store::exists(records)) return true;
    const auto reader = table->records();
    return reader && lengthOf(*reader, store::File::identityOf(records).size) == Length::kWhole;
}

}  // namespace

WorkspaceFaults::WorkspaceFaults(std::string workspace)
    : workspace_(std::move(workspace)), info_(joinPath(workspace_, "info")) {
    if (store::isDirectory(info_)) checkTables();
    for (const std::string& name : store::namesIn(workspace_)) {
        const std::string path = joinPath(workspace_, name);
        if (name != "info" && name != kWorkFolders && store::isDirectory(path)) checkFiles(path);
    }
}

void WorkspaceFaults::checkTables() {
    const Catalogue& catalogue = readCatalogue(info_);
    const bool sound = catalogue.sound;
    if (!sound) faults_.push_back({QX_FAULT_LIST, cataloguePath(info_), QX_MENDS});
    std::vector<Listing> listed;
    for (const Catalogue::Entry& entry : catalogue.entries()) {
        listed.push_back({entry.number, std::string(entry.name)});
    }
    for (const Listing& table : listed) {
        if (!store::exists(tableFile(info_, table.number, "def"))) {
            faults_.push_back({QX_FAULT_MISSING, table.name, sound ? QX_MENDS : QX_MENDS_NOT});
        } else if (!isSound(info_, table.number, table.name)) {
            faults_.push_back({QX_FAULT_TABLE, table.name});
        }
    }
    checkUnlisted(listed);
}

void WorkspaceFaults::checkUnlisted(const std::vector<Listing>& listed) {
    const bool sound = std::ranges::none_of(
        faults_, [](const Fault& fault) { return fault.fault == QX_FAULT_LIST; });
    std::set<int32_t> known;
    for (const Listing& table : listed) known.insert(table.number);
    const std::vector<std::string> names = store::namesIn(info_);
    std::set<int32_t> inUse;
    for (const std::string& name : names) {
        const int32_t number = numberIn(name);
        if (number != 0 && known.count(number) == 0 && isRecent(joinPath(info_, name))) {
            inUse.insert(number);
        }
    }
    for (const std::string& name : names) {
        const int32_t number = numberIn(name);
        if (number == 0 || known.count(number) != 0) continue;
        if (sound) {
            faults_.push_back({QX_LEFT_UNLISTED, joinPath(info_, name),
                               inUse.count(number) != 0 ? QX_MENDS_LATER : QX_MENDS});
            continue;
        }
        // What a damaged list does not say may be any of them.
        TableDefinition definition;
        const bool isDefinition = name.ends_with(".def") && isSound(info_, number, {}) &&
                                  definition.read(joinPath(info_, name));
        if (isDefinition) unlisted_.push_back({number, definition.name});
    }
}

void WorkspaceFaults::checkFiles(const std::string& dataset) {
    for (const std::string& name : store::namesIn(dataset)) {
        const std::string path = joinPath(dataset, name);
        // Those of a table are looked at with it.
        if (name.find(".dat") == name.npos && store::File::identityOf(path).known()) {
            checkRecords(path, keepsRecords(name));
        }
    }
}

// Files of other forms do not say how long they are.
void WorkspaceFaults::checkRecords(const std::string& path, bool mustBeRecords) {
    const auto reader = store::RecordReader::open(path);
    if (!reader) {
        if (mustBeRecords) faults_.push_back({QX_FAULT_EMPTY, path});
        return;
    }
    switch (lengthOf(*reader, store::File::identityOf(path).size)) {
        case Length::kWhole:
            return;
        case Length::kUnfinished:
            faults_.push_back({QX_LEFT_UNFINISHED, path});
            return;
        case Length::kShort:
            faults_.push_back({QX_FAULT_RECORDS, path});
    }
}

bool WorkspaceFaults::mend(const Fault& fault) const {
    if (fault.mending != QX_MENDS) return false;
    const CatalogueLock lock(info_);
    if (!lock.held()) return false;
    const Catalogue& now = readCatalogue(info_);
    if (fault.fault == QX_FAULT_LIST) return !now.sound && rebuildCatalogue(unlisted_);
    if (!now.sound) return false;
    if (fault.fault == QX_FAULT_MISSING) {
        const int32_t number = now.find(fault.about);
        return number != 0 && !store::exists(tableFile(info_, number, "def")) &&
               removeTable(fault.about);
    }
    // It may have been listed since.
    const int32_t number = numberIn(store::namePart(fault.about));
    const auto entries = now.entries();
    const bool listed = std::ranges::any_of(
        entries, [&](const Catalogue::Entry& entry) { return entry.number == number; });
    return !listed && store::removeFile(fault.about);
}

}  // namespace qxfeat
