#include "host/qxfeat/workspaces.h"

#include <algorithm>
#include <cerrno>
#include <memory>

#include "companions/qxfeat/dataset_parts.h"
#include "companions/qxfeat/table.h"
#include "companions/qxfeat/workspace_change.h"
#include "companions/store/folders.h"
#include "companions/store/member_names.h"
#include "host/cpp/call.h"
#include "host/cpp/fixed_text.h"
#include "host/qxbase/failures.h"
#include "host/qxfeat/table_names.h"

namespace {

using namespace qxfeat;
using store::joinPath;

// A folder for one change, and the right to it. The workspace is held as well where a change is
// made at once; one that lasts lets others change other things meanwhile.
struct Work {
    store::FolderLock workspace;
    store::FolderLock folder;
    std::string path;
    std::string name;  // from the workspace on
};

bool begin(const std::string& workspace, Work& work) {
    work.workspace = store::FolderLock::wait(workspace);
    if (!work.workspace.held()) return false;
    const std::string folders = joinPath(workspace, kWorkFolders);
    if (!store::haveDirectory(folders)) return false;
    finishChanges(workspace);
    if (!store::haveDirectory(folders)) return false;
    work.path = store::makeUniqueFolder(folders + '/');
    if (work.path.empty()) return false;
    work.name = joinPath(kWorkFolders, store::namePart(work.path));
    work.folder = store::FolderLock::tryNow(work.path);
    return work.folder.held();
}

int32_t statusOf(bool done) { return done ? QX_WORKSPACE_CHANGED : QX_WORKSPACE_FAILED; }

// Notes that a dataset goes: into the work folder, and its tables out of the catalogue.
void addRemoval(const DatasetParts& parts, const std::string& work, WorkspaceChange& change) {
    if (parts.stored) {
        const std::string place = "old" + std::to_string(change.moves.size());
        change.moves.push_back({Move::kAway, parts.name, joinPath(work, place)});
    }
    for (const Listing& table : parts.tables) {
        change.erased.push_back(table);
        change.numbers.push_back(table.number);
    }
}

std::string renamed(const std::string& name, const std::string& from, const std::string& to) {
    return to + name.substr(from.size());
}

// Writes a table's definition under its new name to the work folder.
bool writeRenamed(const DatasetParts& parts, const Listing& table, const std::string& to,
                  const std::string& path) {
    const std::string info = joinPath(parts.workspace, "info");
    TableDefinition definition;
    const std::string old = tableFile(info, table.number, "def");
    if (!definition.read(old)) {
        wrfailC(old.c_str(), 0);
        return false;
    }
    definition.name = renamed(table.name, parts.name, to);
    if (definition.externalPath.starts_with(parts.name + '/')) {
        definition.externalPath = renamed(definition.externalPath, parts.name, to);
    }
    int32_t ofSubclass = 0;
    int32_t status = 0;
    qx::FixedText<13> subclass;
    qx::call(ruscls_, std::string_view(parts.name), std::string_view(definition.name), subclass,
             ofSubclass, status);
    for (TableItem& item : definition.items) {
        const bool carries = parts.stored && ofSubclass == 0 &&
                             (item.name == parts.name + '#' || item.name == parts.name + "-ID");
        if (carries) item.name = renamed(item.name, parts.name, to);
    }
    return definition.write(path);
}

// A dataset that is being replaced.
struct Replacement {
    Work work;
    std::string workspace;
    std::vector<DatasetParts> old;
};

store::HandleTable<Replacement>& replacements() {
    static store::HandleTable<Replacement> open;
    return open;
}

// Notes that a table comes, with its files, under a number of the workspace's own.
void addTable(const Catalogue::Entry& table, int32_t number, const std::string& folder,
              const std::string& workspace, WorkspaceChange& change) {
    change.entered.push_back({number, std::string(table.name)});
    const std::string front = "table" + std::to_string(table.number) + '.';
    std::vector<std::string> suffixes = {"def"};
    for (const std::string& name : store::namesIn(joinPath(workspace, folder))) {
        if (!name.starts_with(front) || name == front + "def") continue;
        suffixes.push_back(name.substr(front.size()));
    }
    for (const std::string& suffix : suffixes) {
        change.moves.push_back(
            {Move::kIn, joinPath(folder, front + suffix), tableFile("info", number, suffix)});
    }
}

int32_t put(Replacement& replacement) {
    const std::string& workspace = replacement.workspace;
    const std::string& work = replacement.work.name;
    const std::string fresh = joinPath(work, "new");
    replacement.work.workspace = store::FolderLock::wait(workspace);
    if (!replacement.work.workspace.held()) return QX_WORKSPACE_FAILED;
    WorkspaceChange change(workspace, replacement.work.path);
    // What was there when it began may be no more, or be something else.
    for (DatasetParts& old : replacement.old) {
        old = partsOf(joinPath(workspace, old.name));
        if (old.hasFolders) return QX_WORKSPACE_FOLDERS;
        addRemoval(old, work, change);
    }
    const std::string info = joinPath(workspace, "info");
    const std::string freshInfo = joinPath(fresh, "info");
    const Catalogue imported = readCatalogue(joinPath(workspace, freshInfo));
    if (imported.numbers.size() > 0) {
        if (!store::haveDirectory(info)) return QX_WORKSPACE_FAILED;
        const Catalogue& listed = readCatalogue(info);
        int32_t number = listed.nextNumber;
        for (const Catalogue::Entry& table : imported.entries()) {
            const int32_t taken = listed.find(table.name);
            const bool goes =
                taken == 0 || std::count(change.numbers.begin(), change.numbers.end(), taken) != 0;
            if (!goes) return QX_WORKSPACE_TAKEN;
            while (store::exists(tableFile(info, number, "def"))) ++number;
            addTable(table, number++, freshInfo, workspace, change);
        }
    }
    for (const std::string& name : store::namesIn(joinPath(workspace, fresh))) {
        if (name == "info") continue;
        const bool goes = std::any_of(replacement.old.begin(), replacement.old.end(),
                                      [&](const DatasetParts& old) { return old.name == name; });
        if (!goes && store::exists(joinPath(workspace, name))) return QX_WORKSPACE_TAKEN;
        change.moves.push_back({Move::kIn, joinPath(fresh, name), name});
    }
    return statusOf(change.carryOut());
}

}  // namespace

void wsprem_(const char* dataset, int32_t* status, int32_t datasetLength) {
    const std::string path(qx::textArgument(dataset, datasetLength));
    Work work;
    *status = QX_WORKSPACE_FAILED;
    if (!begin(std::string(store::directoryPart(path)), work)) return;
    const DatasetParts parts = partsOf(path);
    *status = parts.nothing()        ? QX_WORKSPACE_NOTHING
              : parts.ownedByAnother ? QX_WORKSPACE_OWNED
              : parts.hasFolders     ? QX_WORKSPACE_FOLDERS
                                     : QX_WORKSPACE_CHANGED;
    WorkspaceChange change(parts.workspace, work.path);
    if (*status == QX_WORKSPACE_CHANGED) {
        addRemoval(parts, work.name, change);
        *status = statusOf(change.carryOut());
    } else {
        change.finish();
    }
    settleCatalogue();
}

void wspren_(const char* dataset, const char* name, int32_t* status, int32_t datasetLength,
             int32_t nameLength) {
    const std::string path(qx::textArgument(dataset, datasetLength));
    const std::string to(qx::textArgument(name, nameLength));
    *status = QX_WORKSPACE_NO_NAME;
    if (!isDatasetName(to)) return;
    Work work;
    *status = QX_WORKSPACE_FAILED;
    if (!begin(std::string(store::directoryPart(path)), work)) return;
    const DatasetParts parts = partsOf(path);
    const DatasetParts other = partsOf(joinPath(parts.workspace, to));
    const std::string info = joinPath(parts.workspace, "info");
    const bool taken =
        !other.nothing() || store::exists(joinPath(parts.workspace, to)) ||
        std::any_of(parts.tables.begin(), parts.tables.end(), [&](const Listing& table) {
            return readCatalogue(info).find(renamed(table.name, parts.name, to)) != 0;
        });
    *status = parts.nothing()        ? QX_WORKSPACE_NOTHING
              : parts.ownedByAnother ? QX_WORKSPACE_OWNED
              : taken                ? QX_WORKSPACE_TAKEN
                                     : QX_WORKSPACE_CHANGED;
    WorkspaceChange change(parts.workspace, work.path);
    if (parts.stored) change.moves.push_back({Move::kAway, parts.name, to});
    for (const Listing& table : parts.tables) {
        if (*status != QX_WORKSPACE_CHANGED) break;
        const std::string file = tableFile(work.name, table.number, "def");
        if (!writeRenamed(parts, table, to, joinPath(parts.workspace, file))) {
            *status = QX_WORKSPACE_FAILED;
        }
        change.moves.push_back({Move::kOver, file, tableFile("info", table.number, "def")});
        change.erased.push_back(table);
        change.entered.push_back({table.number, renamed(table.name, parts.name, to)});
    }
    if (*status == QX_WORKSPACE_CHANGED) {
        *status = statusOf(change.carryOut());
    } else {
        change.finish();
    }
    settleCatalogue();
}

void wspbeg_(int32_t* change, const char* dataset, char* beside, int32_t* status,
             int32_t datasetLength, int32_t besideLength) {
    const std::string path(qx::textArgument(dataset, datasetLength));
    auto made = std::make_unique<Replacement>();
    made->workspace = store::directoryPart(path);
    *status = QX_WORKSPACE_FAILED;
    if (!begin(made->workspace, made->work)) return;
    // Others may go on while this one is imported.
    made->work.workspace = {};
    const std::string fresh = joinPath(made->work.path, "new");
    if (store::haveDirectory(fresh)) *status = QX_WORKSPACE_CHANGED;
    qx::wholeResult(beside, besideLength, joinPath(fresh, store::namePart(path)));
    *change = replacements().add(std::move(made));
}

void wspold_(const int32_t* change, const char* dataset, int32_t* status, int32_t datasetLength) {
    Replacement* found = replacements().find(*change);
    *status = QX_WORKSPACE_FAILED;
    if (!found) return;
    DatasetParts parts = partsOf(qx::textArgument(dataset, datasetLength));
    *status = parts.nothing()                       ? QX_WORKSPACE_NOTHING
              : parts.ownedByAnother                ? QX_WORKSPACE_OWNED
              : parts.hasFolders                    ? QX_WORKSPACE_FOLDERS
              : parts.workspace != found->workspace ? QX_WORKSPACE_FAILED
                                                    : QX_WORKSPACE_CHANGED;
    if (*status == QX_WORKSPACE_CHANGED) found->old.push_back(std::move(parts));
}

void wspput_(const int32_t* change, int32_t* status) {
    Replacement* found = replacements().find(*change);
    *status = found ? put(*found) : static_cast<int32_t>(QX_WORKSPACE_FAILED);
    if (found) found->work.workspace = {};
    settleCatalogue();
}

void wspend_(const int32_t* change) {
    if (Replacement* found = replacements().find(*change)) {
        found->work.workspace = store::FolderLock::wait(found->workspace);
        WorkspaceChange(found->workspace, found->work.path).finish();
    }
    replacements().close(*change);
}

void wspfin_(const char* workspace, int32_t* status, int32_t workspaceLength) {
    const std::string path(qx::textArgument(workspace, workspaceLength));
    *status = QX_WORKSPACE_CHANGED;
    // Mostly there is nothing, and the workspace may not be for us to write.
    if (!store::isDirectory(joinPath(path, kWorkFolders))) return;
    const auto lock = store::FolderLock::wait(path);
    *status = statusOf(lock.held() && finishChanges(path));
    settleCatalogue();
}
