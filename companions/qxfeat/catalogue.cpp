#include "companions/qxfeat/catalogue.h"

#include <algorithm>
#include <cerrno>

#include "companions/qxfeat/packed_words.h"
#include "companions/qxfeat/table_definition.h"
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
    Catalogue catalogue;
    int64_t end = 0;  // behind the last whole entry
    std::size_t erased = 0;
};

Kept kept;

// The table's number, negative for one that was erased. Without a name the number is taken and
// nothing more.
bool takeEntry(int32_t number, const std::string& name) {
    if (number == 0 || number == INT32_MIN || std::abs(number) == INT32_MAX) return false;
    Catalogue& catalogue = kept.catalogue;
    if (number < 0) {
        if (catalogue.numbers.erase(name) != 0) catalogue.nameBytes -= name.size();
        ++kept.erased;
        return true;
    }
    if (!name.empty()) {
        if (!catalogue.hasRoomFor(name)) return false;
        const bool added = catalogue.numbers.insert_or_assign(name, number).second;
        if (added) catalogue.nameBytes += name.size();
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
    int32_t version = 0;
    reader >> version >> catalogue.nextNumber >> catalogue.statisticsBytes;
    catalogue.sound = reader.ok() && version == kVersion && catalogue.nextNumber >= 1;
    kept.end = reader.position();
    while (catalogue.sound) {
        int32_t number = 0;
        std::string name;
        (reader >> number).text(name, QX_TABLE_NAME_LENGTH);
        // An entry that is not whole was cut off, or is being written.
        if (reader.atEnd()) {
            catalogue.sound = canEndIn(number, name);
            return;
        }
        catalogue.sound = reader.ok() && takeEntry(number, name);
        kept.end = reader.position();
    }
}

void readAnew(const std::string& directory, const std::string& path) {
    kept = {};
    kept.directory = directory;
    PackedReader reader(path, kMark);
    if (reader.ok()) {
        readEntries(reader);
    } else {
        kept.catalogue.sound = !store::exists(path);
    }
}

bool replaceCatalogue() {
    const Catalogue& catalogue = kept.catalogue;
    PackedWriter writer;
    writer.raw(kMark) << kVersion << catalogue.nextNumber << catalogue.statisticsBytes;
    for (const Catalogue::Entry& entry : catalogue.entries()) {
        writer << entry.number << entry.name;
    }
    const std::string path = cataloguePath(kept.directory);
    if (!store::replaceFile(path, writer.bytes())) return false;
    kept.file = store::File::read(path).identity();
    kept.end = kept.file.size;
    kept.erased = 0;
    return true;
}

bool addEntry(int32_t number, const std::string& name) {
    PackedWriter writer;
    writer << number << std::string_view(name);
    store::File file = store::File::readWrite(cataloguePath(kept.directory));
    if (!file.isOpen()) {
        wrfailC(file.path().c_str(), errno);
        return false;
    }
    // What stands behind the last whole entry is half of one.
    if (file.size() != kept.end && !file.truncate(kept.end)) return false;
    if (!file.writeAt(kept.end, writer.bytes())) {
        file.truncate(kept.end);
        return false;
    }
    takeEntry(number, name);
    kept.end += static_cast<int64_t>(writer.bytes().size());
    kept.file = file.identity();
    return true;
}

}  // namespace

int32_t Catalogue::find(std::string_view name) const {
    const auto found = numbers.find(name);
    return found == numbers.end() ? 0 : found->second;
}

std::vector<Catalogue::Entry> Catalogue::entries() const {
    std::vector<Entry> list;
    list.reserve(numbers.size());
    for (const auto& [name, number] : numbers) list.push_back({number, name});
    std::sort(list.begin(), list.end(),
              [](const Entry& left, const Entry& right) { return left.number < right.number; });
    return list;
}

const Catalogue& readCatalogue(const std::string& directory) {
    const std::string path = cataloguePath(directory);
    const auto file = store::File::read(path).identity();
    if (!file.known() || file != kept.file || directory != kept.directory) {
        readAnew(directory, path);
        kept.file = file;
    }
    // Each import that meets it says so.
    if (!kept.catalogue.sound) rdfailC(path.c_str(), 0);
    return kept.catalogue;
}

void forgetCatalogue() { kept = {}; }

CatalogueLock::CatalogueLock(const std::string& directory)
    : file_(store::File::create(store::joinPath(directory, "lock"), store::File::Creation::kKeep)) {
    if (!file_.isOpen()) {
        wrfailC(file_.path().c_str(), errno);
        return;
    }
    held_ = file_.lock();
}

int32_t takeNumber() {
    Catalogue& catalogue = kept.catalogue;
    // Tables of which a damaged catalogue does not know keep their files.
    while (catalogue.nextNumber < INT32_MAX - 1 &&
           store::exists(tableFile(kept.directory, catalogue.nextNumber, "def"))) {
        ++catalogue.nextNumber;
    }
    const int32_t number = catalogue.nextNumber;
    if (number >= INT32_MAX - 1) {
        wrfailC(cataloguePath(kept.directory).c_str(), ENOSPC);
        return 0;
    }
    if (!kept.file.known() && !replaceCatalogue()) {
        wrfailC(cataloguePath(kept.directory).c_str(), errno);
        return 0;
    }
    return addEntry(number, {}) ? number : 0;
}

bool enterTable(const std::string& directory, int32_t number, const std::string& name) {
    const CatalogueLock lock(directory);
    const Catalogue& catalogue = readCatalogue(directory);
    if (!lock.held() || !catalogue.sound) return false;
    const bool full = !catalogue.hasRoomFor(name);
    if (!full && catalogue.find(name) == 0) return addEntry(number, name);
    // Another process was faster.
    wrfailC(cataloguePath(directory).c_str(), full ? ENOSPC : EEXIST);
    return false;
}

bool removeTable(const std::string& name) {
    if (!addEntry(-kept.catalogue.find(name), name)) return false;
    // A log that cannot be written anew is as good as it was.
    if (kept.erased > kept.catalogue.numbers.size() + kErasedKept) replaceCatalogue();
    return true;
}

std::string cataloguePath(const std::string& directory) {
    return store::joinPath(directory, "catalog");
}

std::string tableFile(const std::string& directory, int32_t number, std::string_view suffix) {
    std::string name = "table" + std::to_string(number) + '.';
    return store::joinPath(directory, name.append(suffix));
}

}  // namespace qxfeat
