#include "companions/qxfeat/catalogue.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <span>
#include <utility>

#include "companions/qxfeat/packed_words.h"
#include "companions/qxfeat/table_definition.h"
#include "companions/store/durable.h"
#include "companions/store/member_names.h"
#include "host/qxbase/failures.h"

namespace qxfeat {

namespace {

constexpr std::string_view kMark = "QXTABLES";
constexpr int32_t kVersion = 2;
// Erased tables that may be in the log beyond those that are there, before it is written anew.
constexpr std::size_t kErasedKept = 64;

// The catalogue that was read last, and what its file was then.
struct Kept {
    std::string directory;
    store::File::Identity file;
    // By ourselves: when is not known, and whoever finds the file as long as it was finds it so.
    bool changed = false;
    Catalogue catalogue;
    int64_t end = 0;  // behind the last whole entry
    // The last whole entry, by which a file that was appended to is known again; at 0 if none.
    int64_t lastStart = 0;
    int32_t lastNumber = 0;
    std::string lastName;
    std::size_t erased = 0;
};

Kept kept;

// The files of the catalogue that is being changed, open until it is settled.
struct Changing {
    std::string directory;
    store::File lock;
    store::File catalogue;
    int32_t nextNumber = 1;  // behind those that were taken meanwhile
};

Changing changing;

// The table's number, negative for one that was erased. Without a name the number is taken and
// nothing more.
bool takeEntry(int32_t number, const std::string& name) {
    if (number == 0 || number == INT32_MIN || std::abs(number) == INT32_MAX) return false;
    Catalogue& catalogue = kept.catalogue;
    if (number < 0) {
        catalogue.numbers.erase(name);
        ++kept.erased;
        return true;
    }
    if (!name.empty()) {
        if (!catalogue.hasRoomFor(name)) return false;
        catalogue.numbers.set(name, number);
    }
    catalogue.nextNumber = std::max(catalogue.nextNumber, number + 1);
    return true;
}

// Whether the file can have been cut off here: a table's definition is stored before its entry.
bool canEndIn(int32_t number, const std::string& name) {
    TableDefinition definition;
    if (name.empty() || number == 0 || number == INT32_MIN) return true;
    return !definition.read(tableFile(kept.directory, std::abs(number), "def")) ||
           definition.name.starts_with(name);
}

void readEntries(PackedReader& reader) {
    Catalogue& catalogue = kept.catalogue;
    std::string name;
    while (catalogue.sound) {
        int32_t number = 0;
        (reader >> number).text(name, QX_TABLE_NAME_LENGTH);
        // An entry that is not whole was cut off, or is being written.
        if (reader.atEnd()) {
            catalogue.sound = canEndIn(number, name);
            return;
        }
        // Where power was cut a file can have got its length and not its bytes.
        if (reader.ok() && number == 0 && name.empty() && reader.onlyZerosFollow()) return;
        catalogue.sound = reader.ok() && takeEntry(number, name);
        kept.lastStart = kept.end;
        kept.lastNumber = number;
        kept.lastName = name;
        kept.end = reader.position();
    }
}

void readAnew(const std::string& directory, const std::string& path) {
    kept = {};
    kept.directory = directory;
    Catalogue& catalogue = kept.catalogue;
    PackedReader reader(path, kMark);
    if (!reader.ok()) {
        catalogue.sound = !store::exists(path);
        return;
    }
    int32_t version = 0;
    reader >> version >> catalogue.nextNumber >> catalogue.statisticsBytes;
    catalogue.sound = reader.ok() && version == kVersion && catalogue.nextNumber >= 1;
    kept.end = reader.position();
    // About what a catalogue of so many bytes lists; each table has two entries.
    const auto bytes = static_cast<std::size_t>(reader.identity().size);
    const std::size_t tables = std::min(bytes / 26 + 16, Catalogue::kMostTables);
    catalogue.numbers.reserve(tables, std::min(bytes / 2, Catalogue::kMostNameBytes));
    readEntries(reader);
    kept.file = reader.identity();
}

// Reads what was appended. False if the file is not what it was up to there: one that was written
// anew may look like it, where the number of the old file was given to the new one.
bool readOn(const std::string& path) {
    if (kept.lastStart == 0) return false;
    PackedReader reader(path, kept.lastStart);
    const bool same = reader.identity().isSameFile(kept.file);
    // What memory ends in the middle of is read anew.
    kept.file = {};
    int32_t number = 0;
    std::string name;
    (reader >> number).text(name, QX_TABLE_NAME_LENGTH);
    if (!same || !reader.ok() || number != kept.lastNumber || name != kept.lastName) return false;
    readEntries(reader);
    kept.file = reader.identity();
    kept.changed = false;
    return true;
}

// Whether the file is what it was when it was read or changed.
bool isCurrent(const store::File::Identity& now) {
    if (now == kept.file) return true;
    if (!kept.changed || !now.isSameFile(kept.file) || now.size != kept.file.size) return false;
    kept.file = now;
    kept.changed = false;
    return true;
}

bool replaceCatalogue() {
    const Catalogue& catalogue = kept.catalogue;
    PackedWriter writer;
    writer.raw(kMark) << kVersion << catalogue.nextNumber << catalogue.statisticsBytes;
    int64_t lastStart = 0;
    const std::vector<Catalogue::Entry> entries = catalogue.entries();
    for (const Catalogue::Entry& entry : entries) {
        lastStart = static_cast<int64_t>(writer.bytes().size());
        writer << entry.number << entry.name;
    }
    const std::string path = cataloguePath(kept.directory);
    // It names the tables of all datasets: one that is there makes room only for one that lasts.
    std::optional<store::Lasting> lasting;
    if (store::exists(path)) lasting.emplace();
    if (!store::replaceFile(path, writer.bytes())) return false;
    kept.file = store::File::identityOf(path);
    kept.changed = false;
    kept.end = kept.file.size;
    kept.erased = 0;
    kept.lastStart = lastStart;
    kept.lastNumber = entries.empty() ? 0 : entries.back().number;
    kept.lastName = entries.empty() ? std::string_view() : entries.back().name;
    return true;
}

// The file of the catalogue that was read last, to be written to; false, and noted, if it cannot
// be.
bool openToChange() {
    store::File& file = changing.catalogue;
    if (file.isOpen() && file.identityWhenOpened().isSameFile(kept.file)) return true;
    file = store::File::readWrite(cataloguePath(kept.directory));
    if (!file.isOpen()) wrfailC(file.path().c_str(), errno);
    return file.isOpen();
}

// Writes entries behind the others, all or none.
bool append(std::span<const Listing> entries) {
    PackedWriter writer;
    int64_t lastStart = 0;
    for (const Listing& entry : entries) {
        lastStart = kept.end + static_cast<int64_t>(writer.bytes().size());
        writer << entry.number << std::string_view(entry.name);
    }
    if (!openToChange()) return false;
    store::File& file = changing.catalogue;
    // What stands behind the last whole entry is half of one.
    if (kept.file.size != kept.end && !file.truncate(kept.end)) return false;
    if (!file.writeAt(kept.end, writer.bytes()) || !file.settle()) {
        file.truncate(kept.end);
        return false;
    }
    // What memory ends in the middle of is read anew.
    store::File::Identity now = std::exchange(kept.file, {});
    for (const Listing& entry : entries) takeEntry(entry.number, entry.name);
    kept.lastStart = lastStart;
    kept.lastNumber = entries.back().number;
    kept.lastName = entries.back().name;
    kept.end += static_cast<int64_t>(writer.bytes().size());
    now.size = kept.end;
    kept.file = now;
    kept.changed = true;
    return true;
}

// Keeps the file of the lock open, and closes those of another directory.
bool openLock(const std::string& directory) {
    if (changing.lock.isOpen() && changing.directory == directory) return true;
    settleCatalogue();
    changing.directory = directory;
    changing.lock =
        store::File::create(store::joinPath(directory, "lock"), store::File::Creation::kKeep);
    if (!changing.lock.isOpen()) wrfailC(changing.lock.path().c_str(), errno);
    // Whoever made the directory may not have wished that its name lasts.
    return changing.lock.isOpen() && store::settleName(directory);
}

}  // namespace

const Catalogue& readCatalogue(const std::string& directory) {
    const std::string path = cataloguePath(directory);
    const auto file = store::File::identityOf(path);
    const bool same = directory == kept.directory && file.known();
    if (!same || !isCurrent(file)) {
        const bool longer = same && kept.catalogue.sound && file.isSameFile(kept.file) &&
                            file.size > kept.file.size;
        if (!longer || !readOn(path)) readAnew(directory, path);
    }
    // Each import that meets it says so.
    if (!kept.catalogue.sound) rdfailC(path.c_str(), 0);
    return kept.catalogue;
}

void settleCatalogue() {
    if (kept.changed && changing.catalogue.isOpen()) {
        // What others have written since is behind what is known.
        const auto now = changing.catalogue.identity();
        if (!isCurrent(now) && now.isSameFile(kept.file) && now.size > kept.file.size) {
            kept.changed = false;
        }
    }
    changing = {};
    // What was half written, or by the wrong hand, is looked at again.
    if (kept.changed || !kept.catalogue.sound || kept.end != kept.file.size) kept = {};
}

CatalogueLock::CatalogueLock(const std::string& directory)
    : held_(openLock(directory) && changing.lock.lock()) {}

CatalogueLock::~CatalogueLock() {
    if (held_) changing.lock.unlock();
}

TakenNumber takeNumber(const std::string& directory) {
    if (!openLock(directory)) return {};
    if (!kept.file.known()) {
        const CatalogueLock lock(directory);
        const bool sound = readCatalogue(directory).sound;
        if (!lock.held() || !sound || (!kept.file.known() && !replaceCatalogue())) {
            wrfailC(cataloguePath(directory).c_str(), sound ? errno : 0);
            return {};
        }
    }
    if (!openToChange()) return {};
    // Tables of which a damaged catalogue does not know keep their files, and so do those that
    // another process is making.
    int32_t& number = changing.nextNumber;
    for (number = std::max(number, kept.catalogue.nextNumber); number < INT32_MAX - 1; ++number) {
        store::File file = store::File::create(tableFile(directory, number, "def"),
                                               store::File::Creation::kMustBeNew);
        if (file.isOpen()) return {number++, std::move(file)};
        if (errno != EEXIST) {
            wrfailC(file.path().c_str(), errno);
            return {};
        }
    }
    wrfailC(cataloguePath(directory).c_str(), ENOSPC);
    return {};
}

bool enterTable(const std::string& directory, int32_t number, const std::string& name) {
    const CatalogueLock lock(directory);
    const Catalogue& catalogue = readCatalogue(directory);
    if (!lock.held() || !catalogue.sound) return false;
    const bool full = !catalogue.hasRoomFor(name);
    const Listing entries[] = {{number, {}}, {number, name}};
    if (!full && catalogue.find(name) == 0) return append(entries);
    // Another process was faster.
    wrfailC(cataloguePath(directory).c_str(), full ? ENOSPC : EEXIST);
    return false;
}

bool removeTable(const std::string& name) {
    const Listing entry[] = {{-kept.catalogue.find(name), name}};
    if (!append(entry)) return false;
    // A log that cannot be written anew is as good as it was.
    if (kept.erased > kept.catalogue.numbers.size() + kErasedKept) replaceCatalogue();
    return true;
}

bool changeTables(const std::string& directory, std::span<const Listing> erased,
                  std::span<const Listing> entered) {
    const CatalogueLock lock(directory);
    Catalogue& catalogue = kept.catalogue;
    if (!lock.held() || !readCatalogue(directory).sound) {
        wrfailC(cataloguePath(directory).c_str(), 0);
        return false;
    }
    const store::File::Identity now = std::exchange(kept.file, {});
    bool changed = false;
    for (const Listing& table : erased) {
        if (catalogue.find(table.name) != table.number) continue;
        catalogue.numbers.erase(table.name);
        changed = true;
    }
    for (const Listing& table : entered) {
        if (catalogue.find(table.name) == table.number) continue;
        if (!catalogue.hasRoomFor(table.name)) {
            wrfailC(cataloguePath(directory).c_str(), ENOSPC);
            return false;
        }
        catalogue.numbers.set(table.name, table.number);
        catalogue.nextNumber = std::max(catalogue.nextNumber, table.number + 1);
        changed = true;
    }
    if (changed || kept.erased > 0) return replaceCatalogue();
    kept.file = now;
    return true;
}

bool rebuildCatalogue(std::span<const Listing> entered) {
    Catalogue& catalogue = kept.catalogue;
    for (const Listing& table : entered) {
        if (!catalogue.hasRoomFor(table.name) || catalogue.find(table.name) != 0) continue;
        catalogue.numbers.set(table.name, table.number);
        catalogue.nextNumber = std::max(catalogue.nextNumber, table.number + 1);
    }
    kept.file = {};
    catalogue.sound = true;
    return replaceCatalogue();
}

std::string cataloguePath(const std::string& directory) {
    return store::joinPath(directory, "catalog");
}

std::string tableFile(const std::string& directory, int32_t number, std::string_view suffix) {
    std::string name = "table" + std::to_string(number) + '.';
    return store::joinPath(directory, name.append(suffix));
}

}  // namespace qxfeat
