#include "companions/qxfeat/catalogue.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "companions/qxfeat/packed_words.h"
#include "companions/store/failures.h"
#include "companions/store/member_names.h"

namespace qxfeat {

namespace {

constexpr std::string_view kMark = "QXTABLES";
constexpr int32_t kVersion = 1;

std::string cataloguePath(const std::string& directory) {
    return store::joinPath(directory, "catalog");
}

}  // namespace

const Catalogue::Entry* Catalogue::find(std::string_view name) const {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const Entry& entry) { return entry.name == name; });
    return found == entries.end() ? nullptr : &*found;
}

bool readCatalogue(const std::string& directory, Catalogue& catalogue) {
    catalogue = {};
    const std::string path = cataloguePath(directory);
    PackedReader reader(path, kMark);
    if (!reader.ok()) return !store::exists(path);
    int32_t version = 0;
    int32_t count = 0;
    reader >> version >> catalogue.nextNumber >> catalogue.statisticsBytes >> count;
    if (!reader.ok() || version != kVersion || catalogue.nextNumber < 1) {
        return false;
    }
    for (int32_t entry = 0; entry < count; ++entry) {
        Catalogue::Entry next{};
        reader >> next.number >> next.name;
        if (!reader.ok() || next.number < 1 || next.number >= catalogue.nextNumber) return false;
        catalogue.entries.push_back(std::move(next));
    }
    return true;
}

CatalogueLock::CatalogueLock(const std::string& directory)
    : file_(store::File::create(store::joinPath(directory, "lock"), store::File::Creation::kKeep)) {
    if (!file_.isOpen()) return;
    held_ = file_.lock();
}

bool replaceCatalogue(const std::string& directory, const Catalogue& catalogue) {
    PackedWriter writer;
    writer.raw(kMark) << kVersion << catalogue.nextNumber << catalogue.statisticsBytes
                      << static_cast<int32_t>(catalogue.entries.size());
    for (const Catalogue::Entry& entry : catalogue.entries) {
        writer << entry.number << std::string_view(entry.name);
    }
    return replaceFile(cataloguePath(directory), writer.bytes());
}

bool replaceFile(const std::string& path, std::span<const std::byte> bytes) {
    const std::string fresh = path + ".new";
    {
        store::File file = store::File::create(fresh, store::File::Creation::kAnew);
        if (!file.isOpen() || !file.writeAt(0, bytes)) return false;
    }
    if (std::rename(fresh.c_str(), path.c_str()) == 0) return true;
    store::rememberFailure(path, errno);
    return false;
}

std::string tableFile(const std::string& directory, int32_t number, std::string_view suffix) {
    std::string name = "table" + std::to_string(number) + '.';
    return store::joinPath(directory, name.append(suffix));
}

}  // namespace qxfeat
